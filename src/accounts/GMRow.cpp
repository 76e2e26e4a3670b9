#include "accounts/GMRow.h"

#include "common/Numbers.h"
#include "common/RuntimeError.h"
#include "common/Text.h"

#include <optional>
#include <vector>

namespace accounts {

const std::array<const char*, kPrivilegeCount> kPrivilegeNames{
    "BROADCAST",        "ITEMSUMMON",  "MONSTERSUMMON", "CHANGESTATSKILL",  "CHANGEOPTION", "SAVERETURN",
    "CHANGELEVEL",      "WARP",        "WHOIS",         "GOTOSUMMONBANISH", "KILLDIEALIVE", "CHANGEJOB",
    "CHANGECOLORSTYLE", "AUTORAWUNIT", "REFINE"};

namespace {

template <class Read> auto NumberIn(std::string_view text, Read read) -> std::optional<decltype(read(text))> {
    try {
        return read(text);
    } catch (const RuntimeError&) {
        return std::nullopt;
    }
}

std::string Joined(const std::vector<std::string>& fields) {
    std::string line = fields[0];
    for (std::size_t i = 1; i < fields.size(); ++i)
        line.append(",").append(fields[i]);
    return line;
}

} // namespace

GMRow GMRow::Read(std::string_view line) {
    GMRow row;
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

GMRow GMRow::Of(std::int32_t id, const Privileges& flags) {
    std::vector<std::string> fields{std::to_string(id)};
    for (const std::int16_t flag : flags)
        fields.push_back(std::to_string(flag));
    return {true, id, flags, Joined(fields)};
}

void GMRow::Set(std::size_t privilege, std::int16_t flag) {
    flags[privilege] = flag;
    std::vector<std::string> fields = common::Split(text, ',');
    if (fields.size() < kPrivilegeCount + 1)
        fields.resize(kPrivilegeCount + 1, "0");
    fields[privilege + 1] = std::to_string(flag);
    text = Joined(fields);
}

std::string GMHeader() {
    std::vector<std::string> names{"ID"};
    names.insert(names.end(), kPrivilegeNames.begin(), kPrivilegeNames.end());
    return Joined(names);
}

} // namespace accounts
