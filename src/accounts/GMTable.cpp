#include "accounts/GMTable.h"

#include "accounts/GMHistory.h"
#include "common/Files.h"
#include "common/RuntimeError.h"
#include "common/Text.h"

#include <algorithm>
#include <optional>

namespace accounts {

namespace {

constexpr std::string_view kBackupEnding = "bak";

/// Raises the file error that the rewrite would meet. The rewrite replaces the backup first, so it would meet
/// the error when the older backup is gone already.
void CheckReplaceable(const std::string& path) {
    // An administrator may be let in, and the rewrite still refuses.
    if (GetFileAttributesA(path.c_str()) & FILE_ATTRIBUTE_READONLY)
        common::RaiseFileError(ERROR_ACCESS_DENIED, path);
    common::OpenFile(path, GENERIC_WRITE | DELETE, OPEN_EXISTING);
}

} // namespace

/// The table of a file's text. Raises 6.
GMTable GMTable::Of(const std::string& text) {
    GMTable table;
    const auto lines = common::Lines(text);
    for (std::size_t i = 1; i < lines.size(); ++i)
        table.rows_.Append(GMRow::Read(lines[i]));
    table.withoutHeader_ = !lines.empty() && GMRow::Read(lines[0]).isAccount;
    for (const Row& row : table.Rows()) {
        if (row.isAccount)
            table.known_.try_emplace(row.id, row.flags);
    }
    table.knownText_ = text;
    return table;
}

void GMTable::Load(const std::string& path) {
    loadFailed_ = true;
    const std::string text = common::ReadFileText(path);
    if (common::Lines(text).empty())
        throw RuntimeError(common::kInputPastEnd);
    *this = Of(text);
}

std::string GMTable::Text() const {
    std::string text = GMHeader();
    text += common::kLineEnd;
    for (const Row& row : Rows()) {
        text += row.text;
        text += common::kLineEnd;
    }
    return text;
}

GMTable::Met GMTable::Save(const std::string& path, const Judge& judge) {
    const bool exists = common::FileExists(path);
    const std::string old = exists ? common::ReadFileText(path) : std::string();
    if (loadFailed_ && !old.empty())
        throw RuntimeError(common::kPathFileAccess,
                           "The file could not be loaded, so writing it would lose what it holds: " + path);
    // A file that is missing or empty takes nothing away; it gets all rows again.
    const GMTable there = Of(old.empty() ? knownText_ : old);
    Met met;
    met.changed = there.knownText_ != knownText_;
    met.withoutHeader = met.changed && there.withoutHeader_;

    GMTable written = there;
    std::set<std::int32_t> waiting;
    bool all = !met.changed;
    for (const std::int32_t id : changed_) {
        const bool changedThere = there.rows_.FlagsOf(id) != KnownFlagsOf(id);
        // Somebody else has made the same change.
        if (changedThere && there.rows_.FlagsOf(id) == rows_.FlagsOf(id) && !doublesRemoved_.contains(id))
            continue;
        const Verdict verdict = judge ? judge(id, changedThere) : Verdict::Write;
        if (verdict == Verdict::Write)
            CarryTo(written, id);
        else
            all = false;
        if (verdict == Verdict::Hold)
            waiting.insert(id);
        if (changedThere)
            met.both.push_back(id);
    }
    // Over the file that was read, the rows are written in the order that they have got here.
    if (all)
        written.rows_ = rows_;
    const std::string text = written.Text();
    if (exists) {
        CheckReplaceable(path);
        if (old != text)
            KeepGeneration(path, old);
        common::ReplaceFileText(
            path.substr(0, path.size() - std::min(path.size(), kBackupEnding.size())).append(kBackupEnding),
            old);
    }
    common::ReplaceFileText(path, text);
    Adopt(Of(text), waiting);
    return met;
}

/// Goes on from what was just written, with the changes that wait for the next time.
void GMTable::Adopt(GMTable written, const std::set<std::int32_t>& waiting) {
    for (const std::int32_t id : waiting) {
        CarryTo(written, id);
        if (doublesRemoved_.contains(id))
            written.doublesRemoved_.insert(id);
        written.Note(id);
    }
    *this = std::move(written);
}

/// Makes the account's change in another table, which may have other privileges for it than were known here.
void GMTable::CarryTo(GMTable& other, std::int32_t id) const {
    const Row* mine = rows_.Find(id);
    const auto known = KnownFlagsOf(id);
    if (mine && known && other.Contains(id)) {
        Privileges flags = mine->flags;
        for (std::size_t i = 0; i < flags.size(); ++i) {
            if (flags[i] == (*known)[i])
                flags[i] = kLeaveAsItIs;
        }
        other.Modify(id, flags);
    } else {
        while (other.Remove(id)) {
        }
        if (mine)
            other.rows_.Append(*mine);
    }
    if (doublesRemoved_.contains(id))
        other.RemoveDoubles(id);
}

// ---- Changes

std::optional<Privileges> GMTable::KnownFlagsOf(std::int32_t id) const {
    const auto known = known_.find(id);
    return known == known_.end() ? std::nullopt : std::optional(known->second);
}

void GMTable::Note(std::int32_t id) {
    if (doublesRemoved_.contains(id) || rows_.FlagsOf(id) != KnownFlagsOf(id))
        changed_.insert(id);
    else
        changed_.erase(id);
}

std::vector<GMTable::Change> GMTable::Changes() const {
    std::unordered_map<std::int32_t, Privileges> now;
    for (const Row& row : Rows()) {
        if (row.isAccount && changed_.contains(row.id))
            now.try_emplace(row.id, row.flags);
    }
    std::vector<Change> changes;
    for (const std::int32_t id : changed_) {
        const auto after = now.find(id);
        changes.push_back(
            {id, KnownFlagsOf(id), after == now.end() ? std::nullopt : std::optional(after->second)});
    }
    return changes;
}

void GMTable::TakeBack(std::int32_t id) {
    std::set<std::int32_t> others = changed_;
    others.erase(id);
    const bool loadFailed = loadFailed_;
    Adopt(Of(knownText_), others);
    loadFailed_ = loadFailed;
}

// ---- Rows

std::int16_t GMTable::Add(std::int32_t id, const Privileges& flags) {
    if (Contains(id))
        return 0;
    rows_.Append(GMRow::Of(id, flags));
    Note(id);
    return 1;
}

std::int16_t GMTable::Remove(std::int32_t id) {
    if (!rows_.Remove(id))
        return 0;
    Note(id);
    return 1;
}

void GMTable::RemoveDoubles(std::int32_t id) {
    if (!rows_.RemoveDoubles(id))
        return;
    doublesRemoved_.insert(id);
    Note(id);
}

std::int16_t GMTable::Modify(std::int32_t id, const Privileges& flags) {
    if (!rows_.Modify(id, flags))
        return Add(id, flags);
    Note(id);
    return 1;
}

Privileges GMTable::Retrieve(std::int32_t id) const {
    return rows_.FlagsOf(id).value_or(Privileges{kLeaveAsItIs});
}

} // namespace accounts
