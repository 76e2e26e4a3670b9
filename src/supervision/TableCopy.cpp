#include "supervision/TableCopy.h"

#include "common/RuntimeError.h"
#include "servers/Servers.h"

namespace supervision {

namespace {

constexpr std::size_t kPiece = std::size_t{1} * 1024 * 1024;
constexpr std::size_t kPiecesOfAStep = 4;

} // namespace

std::string MySQLDataFolder() {
    const std::string& folder = modServerControl::MySQLPath();
    // A hand may have put the setting in without its backslash.
    return folder + (folder.ends_with('\\') ? "data" : "\\data");
}

std::string WhyMissing(const std::string& path) {
    const auto& [layout, index, data] = suite::kTableFileEndings;
    if (!path.ends_with(layout))
        return {};
    const std::string table = path.substr(0, path.size() - layout.size());
    return common::FileExists(table + std::string(index)) && common::FileExists(table + std::string(data))
               ? ". MySQL 8 and later keep no such file: make database backups there"
               : "";
}

TableCopy::TableCopy(const std::string& source, const std::string& target, std::string_view table) {
    for (std::size_t i = 0; i < kFiles; ++i) {
        const std::string name = std::string(table) + std::string(suite::kTableFileEndings[i]);
        paths_[i] = {name, source + "\\" + name, target + "\\" + name};
    }
}

const std::string& TableCopy::File() const {
    return paths_[std::min(file_, kFiles - 1)].name;
}

bool TableCopy::Step() {
    try {
        return CopyOrCompare();
    } catch (...) {
        // The thread that makes this call may hold on to the copy longer than the backup, which removes its
        // files.
        Close();
        throw;
    }
}

bool TableCopy::CopyOrCompare() {
    piece_.resize(kPiece);
    for (std::size_t pieces = 0; pieces < kPiecesOfAStep; ++pieces) {
        if (comparing_ ? ComparePiece() : CopyPiece())
            continue;
        NextFile();
        if (file_ < kFiles)
            continue;
        if (comparing_)
            return false;
        comparing_ = true;
        file_ = 0;
        copyPiece_.resize(kPiece);
    }
    return true;
}

/// False at the end of the file, which is on the disk then.
bool TableCopy::CopyPiece() {
    const Paths& paths = paths_[file_];
    if (!source_) {
        // The database server has the tables open for writing.
        source_ = common::TryOpenFile(paths.source, GENERIC_READ, OPEN_EXISTING);
        if (const DWORD code = GetLastError(); !source_)
            common::RaiseFileError(code, paths.source + WhyMissing(paths.source));
        target_ = std::make_unique<common::FileReplacement>(paths.target);
    }
    const std::size_t size = common::ReadFrom(source_, piece_.data(), kPiece, paths.source);
    target_->Write(std::string_view(piece_).substr(0, size));
    done_ += size;
    if (size > 0)
        return true;
    target_->Commit();
    target_.reset();
    return false;
}

/// False at the end of both files.
bool TableCopy::ComparePiece() {
    const Paths& paths = paths_[file_];
    if (!source_) {
        source_ = common::OpenFile(paths.source, GENERIC_READ, OPEN_EXISTING);
        copy_ = common::OpenFile(paths.target, GENERIC_READ, OPEN_EXISTING);
    }
    const std::size_t here = common::ReadFrom(source_, piece_.data(), kPiece, paths.source);
    const std::size_t there = common::ReadFrom(copy_, copyPiece_.data(), kPiece, paths.target);
    const std::string_view copied = std::string_view(copyPiece_).substr(0, there);
    evidence_.same = evidence_.same && std::string_view(piece_).substr(0, here) == copied;
    if (file_ == kLayout || file_ == kIndex) {
        std::string& start = file_ == kLayout ? evidence_.layoutStart : evidence_.indexStart;
        if (done_ == 0)
            start = copied.substr(0, kTableStateBytes);
    }
    done_ += there;
    if (file_ != kLayout)
        (file_ == kIndex ? evidence_.indexBytes : evidence_.dataBytes) = done_;
    return here > 0 || there > 0;
}

void TableCopy::Close() {
    source_.reset();
    copy_.reset();
    target_.reset();
}

void TableCopy::NextFile() {
    Close();
    done_ = 0;
    ++file_;
}

} // namespace supervision
