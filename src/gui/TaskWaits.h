#pragma once

#include "gui/Task.h"

#include <chrono>
#include <functional>
#include <optional>
#include <type_traits>
#include <utility>
#include <vector>

// What tasks wait for.

namespace gui {

namespace detail {

/// A wait that ends when its number is waked. What derives from it says who wakes it, in Begin.
template <class Derived> struct Wait {
    bool await_ready() const noexcept { return false; }
    template <class P> void await_suspend(std::coroutine_handle<P> at) {
        static_cast<Derived*>(this)->Begin(at.promise().action->WaitAt(at));
    }
    void await_resume() const noexcept {}
};

} // namespace detail

/// Lets everything else that is due run first: `co_await NextTurn();`
struct NextTurn : detail::Wait<NextTurn> {
    void Begin(WaitId id) const { WakeAfterOthers(id); }
};

/// `co_await Delay(time);` A delay beyond the longest that a timer can wait (24 days) is cut to that.
class Delay : public detail::Wait<Delay> {
public:
    explicit Delay(std::chrono::milliseconds time) : time_(time) {}
    void Begin(WaitId id) const { WakeAfter(id, time_); }

private:
    std::chrono::milliseconds time_;
};

namespace detail {

Task<bool> UntilHolds(std::function<bool()> holds, std::optional<std::chrono::milliseconds> limit);

} // namespace detail

/// Waits until the condition holds, looking at it every few milliseconds, or until the time is over. True
/// when it holds. Without a limit it waits for as long as it takes. The condition captures by reference or
/// plain values only, because this compiler destroys a closure twice that is a temporary of a co_await.
template <class F> Task<bool> Until(F holds, std::optional<std::chrono::milliseconds> limit = {}) {
    static_assert(std::is_trivially_destructible_v<F>);
    return detail::UntilHolds(std::move(holds), limit);
}

/// Something that tasks wait for and that happens once: `co_await event.Happened();` returns at once when it
/// has happened already.
class Event {
public:
    Event() = default;
    Event(const Event&) = delete;
    Event& operator=(const Event&) = delete;

    struct Awaiter : detail::Wait<Awaiter> {
        explicit Awaiter(Event& awaited) : event(awaited) {}
        bool await_ready() const noexcept { return event.set_; }
        void Begin(WaitId id) const { event.waiting_.push_back(id); }
        Event& event;
    };

    Awaiter Happened() { return Awaiter(*this); }
    void Set();
    bool IsSet() const { return set_; }

private:
    bool set_ = false;
    std::vector<WaitId> waiting_;
};

} // namespace gui
