#include "accounts/GMTable.h"

#include "common/Files.h"
#include "common/Numbers.h"
#include "common/RuntimeError.h"
#include "common/Text.h"

#include <algorithm>
#include <limits>
#include <optional>

namespace accounts {

namespace {

constexpr std::string_view kHeader =
    "ID,BROADCAST,ITEMSUMMON,MONSTERSUMMON,CHANGESTATSKILL,CHANGEOPTION,SAVERETURN,CHANGELEVEL,WARP,WHOIS,"
    "GOTOSUMMONBANISH,KILLDIEALIVE,CHANGEJOB,CHANGECOLORSTYLE,AUTORAWUNIT,REFINE";
constexpr std::string_view kBackupEnding = "bak";

template <class Read> auto NumberIn(std::string_view text, Read read) -> std::optional<decltype(read(text))> {
    try {
        return read(text);
    } catch (const RuntimeError&) {
        return std::nullopt;
    }
}

/// Raises the file error now that rewriting would meet half-way, when the backup has been replaced already.
void CheckReplaceable(const std::string& path) {
    // An administrator may be let in, and the rewrite still refuses.
    if (GetFileAttributesA(path.c_str()) & FILE_ATTRIBUTE_READONLY)
        common::RaiseFileError(ERROR_ACCESS_DENIED, path);
    const HANDLE file = CreateFileA(path.c_str(), GENERIC_WRITE | DELETE,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                    OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        common::RaiseFileError(GetLastError(), path);
    CloseHandle(file);
}

std::string LineOf(std::int32_t id, const Privileges& flags) {
    std::string line = std::to_string(id);
    for (const std::int16_t flag : flags)
        line += "," + std::to_string(flag);
    return line;
}

/// `line` with one flag changed; what else stands in it, comments behind the flags included, stays.
std::string WithFlag(std::string_view line, std::size_t privilege, std::int16_t flag) {
    std::vector<std::string> fields = common::Split(line, ',');
    if (fields.size() < kPrivilegeCount + 1)
        fields.resize(kPrivilegeCount + 1, "0");
    fields[privilege + 1] = std::to_string(flag);
    std::string text = fields[0];
    for (std::size_t i = 1; i < fields.size(); ++i)
        text += "," + fields[i];
    return text;
}

} // namespace

GMTable::Row GMTable::ReadRow(std::string_view line) {
    Row row;
    row.text = line;
    const std::vector<std::string> fields = common::Split(line, ',');
    const auto id = NumberIn(fields[0], [](std::string_view text) { return common::CLng(text); });
    if (!id)
        return row;
    row.isAccount = true;
    row.id = *id;
    for (std::size_t i = 0; i < kPrivilegeCount && i + 1 < fields.size(); ++i)
        row.flags[i] =
            NumberIn(fields[i + 1], [](std::string_view text) { return common::CInt(text); }).value_or(0);
    return row;
}

void GMTable::Append(Row row) {
    if (row.isAccount) {
        if (count_ == std::numeric_limits<std::int16_t>::max())
            throw RuntimeError(common::kOverflow);
        ++count_;
    }
    rows_.push_back(std::move(row));
}

void GMTable::Load(const std::string& path) {
    loadFailed_ = true;
    const std::string text = common::ReadFileText(path);
    const auto lines = common::Lines(text);
    if (lines.empty())
        throw RuntimeError(common::kInputPastEnd);
    GMTable loaded;
    for (std::size_t i = 1; i < lines.size(); ++i)
        loaded.Append(ReadRow(lines[i]));
    *this = std::move(loaded);
}

std::string GMTable::Text() const {
    std::string text(kHeader);
    text += common::kLineEnd;
    for (const Row& row : rows_) {
        text += row.text;
        text += common::kLineEnd;
    }
    return text;
}

void GMTable::Save(const std::string& path) {
    if (common::FileExists(path)) {
        const std::string old = common::ReadFileText(path);
        if (loadFailed_ && !old.empty())
            throw RuntimeError(common::kPathFileAccess,
                               "The file could not be loaded, so writing it would lose what it holds: " +
                                   path);
        CheckReplaceable(path);
        common::ReplaceFileText(
            path.substr(0, path.size() - std::min(path.size(), kBackupEnding.size())).append(kBackupEnding),
            old);
    }
    common::ReplaceFileText(path, Text());
    loadFailed_ = false;
}

std::vector<GMTable::Row>::const_iterator GMTable::Find(std::int32_t id) const {
    return std::ranges::find_if(rows_, [id](const Row& row) { return row.isAccount && row.id == id; });
}

bool GMTable::Contains(std::int32_t id) const {
    return Find(id) != rows_.end();
}

std::int16_t GMTable::Add(std::int32_t id, const Privileges& flags) {
    if (Contains(id))
        return 0;
    Append({true, id, flags, LineOf(id, flags)});
    return 1;
}

std::int16_t GMTable::Remove(std::int32_t id) {
    const auto row = Find(id);
    if (row == rows_.end())
        return 0;
    rows_.erase(row);
    --count_;
    return 1;
}

std::int16_t GMTable::Modify(std::int32_t id, const Privileges& flags) {
    const auto found = Find(id);
    if (found == rows_.end())
        return Add(id, flags);
    Row& row = rows_[static_cast<std::size_t>(found - rows_.begin())];
    for (std::size_t i = 0; i < kPrivilegeCount; ++i) {
        if (flags[i] == row.flags[i] || flags[i] == kLeaveAsItIs)
            continue;
        row.flags[i] = flags[i];
        row.text = WithFlag(row.text, i, flags[i]);
    }
    return 1;
}

Privileges GMTable::Retrieve(std::int32_t id) const {
    const auto row = Find(id);
    if (row != rows_.end())
        return row->flags;
    return {kLeaveAsItIs};
}

} // namespace accounts
