#pragma once

#include <functional>

namespace modServerControl {

/// What the pause is made of; a stand-in for each lets a test choose the hour.
struct PauseSurroundings {
    std::function<double()> now; ///< local date and time: days since 30 December 1899, whole seconds
    std::function<bool()> isDue; ///< true when a millisecond has passed since `yield` was last called
    std::function<void()> yield; ///< dispatches the messages that are pending
};

/// Counts from today's day number upwards, one a turn, until the count equals the present time plus 1000
/// days. That is so only at exactly midnight; at any other time the count runs out of the 32-bit numbers and
/// raises 6 (overflow). `yield` is called about once a millisecond all the while.
void RunZonePause(const PauseSurroundings& surroundings);

/// RunZonePause by the system's clock and the tool's messages: some seconds. Raises 6, except at midnight;
/// throws gui::Leaving when the tool is left.
void ZoneShutdownPause();

} // namespace modServerControl
