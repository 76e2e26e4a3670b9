#pragma once

#include "common/Files.h"
#include "servers/Databases.h"
#include "supervision/TableProof.h"

#include <array>
#include <memory>
#include <string>

namespace supervision {

/// The folder below the MySQL folder of the settings in which each database has a folder of its own.
std::string MySQLDataFolder();

/// For the end of an error about a table file that is missing: why, where that is known, behind a full stop.
std::string WhyMissing(const std::string& path);

/// The copy of one table's files, made and then compared with the table in small steps. The steps touch
/// nothing but these files, so that they can be made aside.
class TableCopy {
public:
    /// The three files of `table` from the folder `source` to the folder `target`.
    TableCopy(const std::string& source, const std::string& target, std::string_view table);

    /// Copies or compares some megabytes. False when all is done. Raises the file error, which names the
    /// file.
    bool Step();

    /// The file that is being copied or compared.
    const std::string& File() const;
    /// What the comparison has found, once all is done.
    TableVerdict Verdict() const { return VerdictOn(evidence_); }

private:
    static constexpr std::size_t kLayout = 0;
    static constexpr std::size_t kIndex = 1;
    static constexpr std::size_t kFiles = std::size(suite::kTableFileEndings);
    struct Paths {
        std::string name;
        std::string source;
        std::string target;
    };

    bool CopyOrCompare();
    bool CopyPiece();
    bool ComparePiece();
    void NextFile();
    void Close();

    std::array<Paths, kFiles> paths_;
    std::size_t file_ = 0;
    bool comparing_ = false;
    common::FileHandle source_;
    common::FileHandle copy_;
    std::unique_ptr<common::FileReplacement> target_;
    std::string piece_;
    std::string copyPiece_;
    std::uint64_t done_ = 0;
    TableEvidence evidence_;
};

} // namespace supervision
