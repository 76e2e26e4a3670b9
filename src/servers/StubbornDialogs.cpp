#include "servers/StubbornDialogs.h"

#include "servers/ForeignWindows.h"

#include <algorithm>
#include <cstdio>

namespace modServerControl {

namespace {

constexpr ULONGLONG kFirstPause = 1000;
constexpr ULONGLONG kLongestPause = 60'000;
constexpr ULONGLONG kWorthTelling = 2000;
constexpr ULONGLONG kPatience = 30'000;

std::string ClockText(std::chrono::seconds ago) {
    SYSTEMTIME local;
    GetLocalTime(&local);
    constexpr int kDay = 24 * 60 * 60;
    const auto now = (local.wHour * 60 + local.wMinute) * 60 + local.wSecond;
    const int then = ((now - static_cast<int>(ago.count() % kDay)) % kDay + kDay) % kDay;
    char text[16];
    std::snprintf(text, sizeof text, "%02d:%02d:%02d", then / 3600, then / 60 % 60, then % 60);
    return text;
}

} // namespace

std::string TextOf(const StubbornDialog& dialog) {
    return dialog.program + " shows \"" + dialog.title + "\" since " + ClockText(dialog.age) +
           ", and it does not close";
}

StubbornDialogs::Meeting& StubbornDialogs::Known(HWND dialog, ULONGLONG now) {
    // The system gives the handle of a window that has gone to another one.
    std::erase_if(met_, [](const auto& met) { return !IsWindow(met.first); });
    return met_.try_emplace(dialog, Meeting{.first = now}).first->second;
}

void StubbornDialogs::Meet(HWND dialog, ULONGLONG now) {
    Known(dialog, now);
}

bool StubbornDialogs::MayLog(HWND dialog, ULONGLONG now) {
    Meeting& meeting = Known(dialog, now);
    if (now < meeting.logAgain)
        return false;
    meeting.pause = std::clamp(meeting.pause * 2, kFirstPause, kLongestPause);
    meeting.logAgain = now + meeting.pause;
    return true;
}

bool StubbornDialogs::IsGivenUp(HWND dialog, ULONGLONG now) const {
    const auto met = met_.find(dialog);
    return met != met_.end() && now - met->second.first >= kPatience;
}

std::optional<StubbornDialog> StubbornDialogs::Oldest(ULONGLONG now) {
    std::erase_if(met_, [](const auto& met) { return !IsWindow(met.first); });
    const auto oldest = std::ranges::min_element(met_, {}, [](const auto& met) { return met.second.first; });
    if (oldest == met_.end() || now - oldest->second.first < kWorthTelling)
        return {};
    return StubbornDialog{.window = oldest->first,
                          .title = ReadFullTitle(oldest->first),
                          .program = GetWindowModuleName(oldest->first),
                          .age = std::chrono::seconds((now - oldest->second.first) / 1000)};
}

StubbornDialogs& Stubborn() {
    static StubbornDialogs dialogs;
    return dialogs;
}

} // namespace modServerControl
