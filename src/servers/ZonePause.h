#pragma once

#include "gui/Task.h"

#include <cstdint>
#include <functional>

namespace modServerControl {

/// What the pause is made of; a stand-in for each lets a test choose the hour.
struct PauseSurroundings {
    std::function<double()> now; ///< local date and time: days since 30 December 1899, whole seconds
    std::function<bool()> isDue; ///< true when everything else should have its turn
};

/// Counts from today's day number upwards, one a turn, until the count equals the present time plus 1000
/// days. That is so only at exactly midnight; at any other time the count runs out of the 32-bit numbers.
class ZonePause {
public:
    explicit ZonePause(PauseSurroundings surroundings);

    /// Counts on until `isDue`, which is asked every fraction of a millisecond, and before the first turn.
    /// True when the pause is over. Raises 6 (overflow) when the count runs out.
    bool CountOn();

private:
    PauseSurroundings surroundings_;
    // Volatile, so that each of the two thousand million turns is really made: the time they take is the
    // pause that the zone server has for closing.
    volatile std::int32_t counter_;
    std::uint32_t turn_ = 0;
    bool hadItsTurn_ = false;
    bool canEqual_ = true;
};

/// The pause by the system's clock: some seconds, in slices of a millisecond. Raises 6, except at midnight.
gui::Task<> ZoneShutdownPause();

} // namespace modServerControl
