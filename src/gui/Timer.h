#pragma once

#include "gui/Form.h"

#include <chrono>

namespace gui {

/// Fires while its form is loaded and it is enabled. A tick that comes due while the handler still runs, or
/// its task is not over, is dropped. An interval of 0 or less never fires.
class Timer {
public:
    template <class F, class C = F>
    Timer(F& form, std::chrono::milliseconds interval, void (C::*tick)(), bool enabled = true)
        : Timer(
              form, interval,
              [&form, tick](const std::function<void()>& over) {
                  form.Raise([&] { (form.*tick)(); });
                  over();
              },
              enabled) {}
    template <class F, class C = F>
    Timer(F& form, std::chrono::milliseconds interval, Task<> (C::*tick)(), bool enabled = true)
        : Timer(
              form, interval,
              [&form, tick](const std::function<void()>& over) { form.Start((form.*tick)(), over); },
              enabled) {}
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
    using TickUntilOver = std::function<void(const std::function<void()>& over)>;
    Timer(Form& form, std::chrono::milliseconds interval, TickUntilOver tick, bool enabled);
    UINT_PTR Id() const { return reinterpret_cast<UINT_PTR>(this); }
    void Apply();

    Form& form_;
    std::chrono::milliseconds interval_;
    TickUntilOver tick_;
    bool enabled_;
    bool running_ = false;
};

} // namespace gui
