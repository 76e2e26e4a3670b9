#include "servers/ZonePause.h"

#include "common/FileTime.h"
#include "common/Numbers.h"
#include "common/RuntimeError.h"
#include "gui/Application.h"

#include <windows.h>

#include <cstdint>
#include <limits>

namespace modServerControl {

namespace {

constexpr double kDaysAhead = 1000;

// Between two looks at the millisecond clock: a fraction of a millisecond's worth of turns.
constexpr std::uint32_t kTurnsBetweenLooks = 1u << 14;

double LocalDateTime() {
    constexpr std::uint64_t kUnitsOfASecond = 10'000'000;
    constexpr double kSecondsOfADay = 86'400;
    constexpr double kDaysFrom1601To1899 = 109'205;
    SYSTEMTIME local;
    GetLocalTime(&local);
    FILETIME time{};
    SystemTimeToFileTime(&local, &time);
    const std::uint64_t seconds = common::FileTimeUnits(time) / kUnitsOfASecond;
    return static_cast<double>(seconds) / kSecondsOfADay - kDaysFrom1601To1899;
}

/// A clock that says every millisecond, once, that it has passed.
class MillisecondClock {
public:
    MillisecondClock() {
        QueryPerformanceFrequency(&frequency_);
        QueryPerformanceCounter(&last_);
    }

    bool IsDue() {
        LARGE_INTEGER time;
        QueryPerformanceCounter(&time);
        if (time.QuadPart - last_.QuadPart < frequency_.QuadPart / 1000)
            return false;
        last_ = time;
        return true;
    }

private:
    LARGE_INTEGER frequency_{};
    LARGE_INTEGER last_{};
};

} // namespace

void RunZonePause(const PauseSurroundings& surroundings) {
    // Volatile, so that each of the two thousand million turns is really made: the time they take is the
    // pause that the zone server has for closing.
    volatile std::int32_t counter = common::CLng(surroundings.now());
    // Time goes on by a day while the count goes on by as many turns as the processor can make. Once the
    // count is past the wanted number it stays past it, and the clock need not be read.
    bool canEqual = true;
    for (std::uint32_t turn = 0;; ++turn) {
        if (turn % kTurnsBetweenLooks == 0 && surroundings.isDue())
            surroundings.yield();
        if (counter == std::numeric_limits<std::int32_t>::max())
            throw RuntimeError(common::kOverflow);
        counter = counter + 1;
        if (canEqual) {
            const double wanted = surroundings.now() + kDaysAhead;
            if (counter == wanted)
                return;
            canEqual = counter < wanted;
        }
    }
}

void ZoneShutdownPause() {
    MillisecondClock clock;
    RunZonePause({LocalDateTime, [&] { return clock.IsDue(); }, gui::DoEvents});
}

} // namespace modServerControl
