#pragma once

#include <string>
#include <string_view>

namespace config {

/// What the zone server tells in its title.
struct ZoneStatus {
    std::string uptime;
    std::string players;
};

/// Shown for what a title does not tell.
inline constexpr const char* kNotInTitle = "-";

/// Reads a title like "Kerno Zone Server 00:01:02:03 Current Players (Count: 12)": the text between "Server"
/// and "Current", and the text behind "Count:" without the title's last character, which closes the bracket.
/// Letter case does not count. kNotInTitle where the words are missing or in another order.
ZoneStatus ParseZoneTitle(std::string_view title);

} // namespace config
