#pragma once

#include <string_view>

/// The numbers that the texts of Kerno.ini's settings stand for in the configurator.
namespace config {

/// Index of "Normal" in the lists of priorities.
inline constexpr int kNormalPriority = 3;

/// 1 for a whole text that is a number other than 0 after rounding, however large, which is how the servers
/// take a switch; 0 for every other text.
int CheckValueOf(std::string_view text);

/// The number at the start of the text, 0 ("Realtime") when there is none; "Normal" for one that is no index
/// of the list, as no server can be given such a priority.
int PriorityOf(std::string_view text);

} // namespace config
