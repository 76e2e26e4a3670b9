#pragma once

#include "accounts/GMRows.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

namespace accounts {

/// The game masters and what each may do, as the zone server reads it from its privilege file.
///
/// What an operator wrote into the file by hand stays: a line without an account number at its start is
/// carried along where it stands, and a line with missing or unreadable flags is the row of its account with
/// those flags read as 0, written back as it was until a flag of it is changed. Only Remove takes a line away
/// with all that stands in it, also when the account gets a new row afterwards.
class GMTable {
public:
    using Row = GMRow;
    /// An account whose privileges here are not those of the file. Without flags it has no row.
    struct Change {
        std::int32_t id;
        std::optional<Privileges> before;
        std::optional<Privileges> after;
    };
    /// What becomes of an account's change at Save: written, kept for the next one, or forgotten.
    enum class Verdict { Write, Hold, Forget };
    /// Asked for each change; `changedThere`: the file has other privileges for the account by now than when
    /// it was read.
    using Judge = std::function<Verdict(std::int32_t id, bool changedThere)>;
    /// What Save met in a file that somebody else had changed since it was read or written here.
    struct Met {
        bool changed = false;
        /// Its first line was an account's row, in whose place the header stands now.
        bool withoutHeader = false;
        /// Accounts whose privileges were changed both there and here.
        std::vector<std::int32_t> both;
    };

    /// Reads the file; its first line is a header whatever it holds. Raises the file error, 62 for a file
    /// without any line and 6 for more rows than a 16-bit count holds; the table is then as it was before.
    void Load(const std::string& path);
    /// True when the first line that Load took for the header is an account's row.
    bool WithoutHeader() const { return withoutHeader_; }

    /// Rewrites the file, which then ends with the previous one beside it under the ending "bak" and as a
    /// dated generation (GMHistory.h). When the file is not the one that was last read or written here, only
    /// the accounts that were changed here are changed in it. Whoever looks at any moment, and after any
    /// crash, finds the old file or the new one under the name. Raises the file error, and 75 after a Load
    /// that failed while the file holds something: what could not be read must not be replaced. File and
    /// table are then as they were.
    Met Save(const std::string& path, const Judge& judge = {});

    /// Appends a row; 0, and nothing happens, when the account has one. Raises 6 when the count is used up.
    std::int16_t Add(std::int32_t id, const Privileges& flags);
    /// Removes the account's first row; 0 when it has none.
    std::int16_t Remove(std::int32_t id);
    /// Removes the account's rows behind the first one.
    void RemoveDoubles(std::int32_t id);
    /// Sets the flags of the account's first row that are not kLeaveAsItIs; an account without a row gets one
    /// with all flags as given. Raises 6 as Add does.
    std::int16_t Modify(std::int32_t id, const Privileges& flags);
    /// The flags of the account's first row; kLeaveAsItIs in front when it has none.
    Privileges Retrieve(std::int32_t id) const;
    bool Contains(std::int32_t id) const { return rows_.Find(id) != nullptr; }

    const std::vector<Row>& Rows() const { return rows_.All(); }
    /// The changes that wait for Save, by account number. Rows that only changed places are none.
    std::vector<Change> Changes() const;
    const std::set<std::int32_t>& ChangedIds() const { return changed_; }
    /// Gives the account the rows that it has in the file.
    void TakeBack(std::int32_t id);

    /// True when the last Load failed and nothing was saved since.
    bool LoadFailed() const { return loadFailed_; }

private:
    static GMTable Of(const std::string& text);
    std::optional<Privileges> KnownFlagsOf(std::int32_t id) const;
    void Note(std::int32_t id);
    void CarryTo(GMTable& other, std::int32_t id) const;
    void Adopt(GMTable written, const std::set<std::int32_t>& waiting);
    std::string Text() const;

    GMRows rows_;
    bool loadFailed_ = false;
    bool withoutHeader_ = false;
    /// The file as it was last read or written here, and its accounts' first rows.
    std::string knownText_;
    std::unordered_map<std::int32_t, Privileges> known_;
    std::set<std::int32_t> changed_;
    std::set<std::int32_t> doublesRemoved_;
};

} // namespace accounts
