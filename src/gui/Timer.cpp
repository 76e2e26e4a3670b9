#include "gui/Timer.h"

#include <algorithm>

namespace gui {

Timer::Timer(Form& form, std::chrono::milliseconds interval, TickUntilOver tick, bool enabled)
    : form_(form), interval_(interval), tick_(std::move(tick)), enabled_(enabled) {
    form.timers_.push_back(this);
}

Timer::~Timer() {
    if (form_.Loaded())
        KillTimer(form_.Window(), Id());
    std::erase(form_.timers_, this);
}

void Timer::Interval(std::chrono::milliseconds interval) {
    interval_ = interval;
    Apply();
}

void Timer::Enabled(bool enabled) {
    // Enabling a timer that is enabled does not start its interval anew.
    if (enabled == enabled_)
        return;
    enabled_ = enabled;
    Apply();
}

void Timer::Apply() {
    if (!form_.Loaded())
        return;
    KillTimer(form_.Window(), Id());
    if (enabled_ && interval_.count() > 0) {
        const auto longest = static_cast<long long>(USER_TIMER_MAXIMUM);
        SetTimer(form_.Window(), Id(), static_cast<UINT>(std::min<long long>(interval_.count(), longest)),
                 nullptr);
    }
}

void Timer::Tick() {
    if (running_)
        return;
    running_ = true;
    tick_([this] { running_ = false; });
}

} // namespace gui
