#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace accounts {

/// The columns of the privilege file, and an account's flags in their order: 0 denied, 1 granted.
inline constexpr std::size_t kPrivilegeCount = 15;
using Privileges = std::array<std::int16_t, kPrivilegeCount>;

/// As a flag for Modify: leave the privilege as it is. As the first flag from Retrieve: no game master.
inline constexpr std::int16_t kLeaveAsItIs = 2;

/// The game masters and what each may do, as the zone server reads it from its privilege file.
///
/// What an operator wrote into the file by hand stays: a line without an account number at its start is
/// carried along where it stands, and a line with missing or unreadable flags is the row of its account with
/// those flags read as 0, written back as it was until a flag of it is changed. Only Remove takes a line away
/// with all that stands in it, also when the account gets a new row afterwards.
class GMTable {
public:
    /// Reads the file; its first line is a header whatever it holds. Raises the file error, 62 for a file
    /// without any line and 6 for more rows than a 16-bit count holds; the table is then as it was before.
    void Load(const std::string& path);

    /// Rewrites the file, which then ends with the previous one beside it under the ending "bak". Whoever
    /// looks at any moment, and after any crash, finds the old file or the new one under the name. Raises
    /// the file error, and 75 after a Load that failed while the file holds something: what could not be read
    /// must not be replaced. The file is then as it was.
    void Save(const std::string& path);

    /// Appends a row; 0, and nothing happens, when the account has one. Raises 6 when the count is used up.
    std::int16_t Add(std::int32_t id, const Privileges& flags);
    /// Removes the account's first row; 0 when it has none.
    std::int16_t Remove(std::int32_t id);
    /// Sets the flags of the account's first row that are not kLeaveAsItIs; an account without a row gets one
    /// with all flags as given. Raises 6 as Add does.
    std::int16_t Modify(std::int32_t id, const Privileges& flags);
    /// The flags of the account's first row; kLeaveAsItIs in front when it has none.
    Privileges Retrieve(std::int32_t id) const;
    bool Contains(std::int32_t id) const;

    /// True when the last Load failed and nothing was saved since.
    bool LoadFailed() const { return loadFailed_; }

private:
    struct Row {
        bool isAccount = false;
        std::int32_t id = 0;
        Privileges flags{};
        /// The line as it was read or is to be written.
        std::string text;
    };

    static Row ReadRow(std::string_view line);
    void Append(Row row);
    std::vector<Row>::const_iterator Find(std::int32_t id) const;
    std::string Text() const;

    std::vector<Row> rows_;
    std::int16_t count_ = 0;
    bool loadFailed_ = false;
};

} // namespace accounts
