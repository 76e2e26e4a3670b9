#include "config/ZoneTitle.h"

#include "common/Text.h"

namespace config {

namespace {

constexpr std::string_view kBeforeUptime = "Server";
constexpr std::string_view kBehindUptime = "Current";
constexpr std::string_view kBeforePlayers = "Count:";

/// The text behind `word`, which starts at `at`, up to `end`.
std::string Between(std::string_view title, std::size_t at, std::string_view word, std::size_t end) {
    constexpr auto kNone = std::string_view::npos;
    if (at == kNone || end == kNone || end < at + word.size())
        return kNotInTitle;
    return common::Trim(title.substr(at + word.size(), end - at - word.size()));
}

} // namespace

ZoneStatus ParseZoneTitle(std::string_view title) {
    // All three words are looked for from the title's start, so a second "Server" further on is no matter.
    const auto find = [&](std::string_view word) { return common::FindIgnoreCase(title, word); };
    return {Between(title, find(kBeforeUptime), kBeforeUptime, find(kBehindUptime)),
            Between(title, find(kBeforePlayers), kBeforePlayers, title.size() - 1)};
}

} // namespace config
