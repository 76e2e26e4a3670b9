#pragma once

#include "gui/Form.h"

#include <chrono>

namespace gui {

/// Fires while its form is loaded and it is enabled. A tick that comes due while the handler still runs is
/// dropped; other timers go on firing while a handler yields. An interval of 0 or less never fires.
class Timer {
public:
    template <class F, class C = F>
    Timer(F& form, std::chrono::milliseconds interval, void (C::*tick)(), bool enabled = true)
        : Timer(form, interval, Bind(form, tick), enabled) {}
    ~Timer();
    Timer(const Timer&) = delete;
    Timer& operator=(const Timer&) = delete;

    std::chrono::milliseconds Interval() const { return interval_; }
    /// Starts the new interval from now; one above the platform's longest (24 days) is cut to that.
    void Interval(std::chrono::milliseconds interval);
    bool Enabled() const { return enabled_; }
    void Enabled(bool enabled);
    /// Runs the handler as a tick does.
    void Tick();

private:
    friend class Form;
    Timer(Form& form, std::chrono::milliseconds interval, std::function<void()> tick, bool enabled);
    UINT_PTR Id() const { return reinterpret_cast<UINT_PTR>(this); }
    void Apply();

    Form& form_;
    std::chrono::milliseconds interval_;
    std::function<void()> tick_;
    bool enabled_;
    bool running_ = false;
};

} // namespace gui
