#include "servers/ZonePause.h"

#include "common/FileTime.h"
#include "common/Numbers.h"
#include "common/RuntimeError.h"
#include "gui/TaskWaits.h"

#include <windows.h>

#include <cstdint>
#include <limits>
#include <utility>

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

ZonePause::ZonePause(PauseSurroundings surroundings)
    : surroundings_(std::move(surroundings)), counter_(common::CLng(surroundings_.now())) {}

bool ZonePause::CountOn() {
    // Time goes on by a day while the count goes on by as many turns as the processor can make. Once the
    // count is past the wanted number it stays past it, and the clock need not be read.
    for (;; ++turn_) {
        if (turn_ % kTurnsBetweenLooks == 0 && !std::exchange(hadItsTurn_, false) && surroundings_.isDue()) {
            hadItsTurn_ = true;
            return false;
        }
        if (counter_ == std::numeric_limits<std::int32_t>::max())
            throw RuntimeError(common::kOverflow);
        counter_ = counter_ + 1;
        if (canEqual_) {
            const double wanted = surroundings_.now() + kDaysAhead;
            if (counter_ == wanted)
                return true;
            canEqual_ = counter_ < wanted;
        }
    }
}

gui::Task<> ZoneShutdownPause() {
    MillisecondClock clock;
    ZonePause pause({LocalDateTime, [&] { return clock.IsDue(); }});
    while (!pause.CountOn())
        co_await gui::NextTurn();
}

} // namespace modServerControl
