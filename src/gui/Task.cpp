#include "gui/Task.h"

#include <windows.h>

#include <algorithm>

namespace gui {

namespace {

int underWay = 0;
detail::Action* runningAction = nullptr;

} // namespace

namespace detail {

Action* Action::Running() {
    return runningAction;
}

Action::Action(Task<> outermost, Ended ended, std::function<void(int)> occupy)
    : outermost_(std::make_unique<Task<>>(std::move(outermost))), ended_(std::move(ended)),
      occupy_(std::move(occupy)), next_(outermost_->handle_) {
    outermost_->handle_.promise().action = this;
    ++underWay;
}

Action::~Action() {
    ForgetWait(waiting_);
}

void Action::Run() {
    // Whoever owns it may let it go meanwhile.
    const auto self = shared_from_this();
    Action* const outer = std::exchange(runningAction, this);
    waiting_ = 0;
    running_ = true;
    pieceBegan_ = std::chrono::steady_clock::now();
    if (occupy_)
        occupy_(1);
    while (next_ && !cancelled_)
        std::exchange(next_, {}).resume();
    running_ = false;
    runningAction = outer;
    const auto handle = outermost_->handle_;
    if (cancelled_)
        Finish({});
    else if (handle.done())
        Finish(handle.promise().error);
    if (occupy_)
        occupy_(-1);
}

void Action::Cancel() {
    if (over_ || cancelled_)
        return;
    cancelled_ = true;
    if (!running_)
        Finish({});
}

WaitId Action::WaitAt(std::coroutine_handle<> at) {
    waiting_ = BeginWait([this, at] {
        next_ = at;
        Run();
    });
    return waiting_;
}

void Action::Finish(std::exception_ptr error) {
    const auto self = shared_from_this();
    ForgetWait(std::exchange(waiting_, 0));
    over_ = true;
    --underWay;
    outermost_.reset();
    if (ended_)
        std::exchange(ended_, {})(error);
}

} // namespace detail

void Tasks::Start(Task<> task, std::function<void(std::exception_ptr error)> ended) {
    std::erase_if(actions_, [](const auto& action) { return action->Over(); });
    const auto action = std::make_shared<detail::Action>(std::move(task), std::move(ended), occupy_);
    actions_.push_back(action);
    action->Run();
}

void Tasks::Cancel() {
    for (const auto& action : std::exchange(actions_, {}))
        action->Cancel();
}

bool Tasks::Any() const {
    return std::ranges::any_of(actions_, [](const auto& action) { return !action->Over(); });
}

int TasksUnderWay() {
    return underWay;
}

Task<bool> detail::UntilHolds(std::function<bool()> holds, std::optional<std::chrono::milliseconds> limit) {
    // At first it is looked at as often as may be, because most of what is waited for takes a few
    // milliseconds.
    constexpr ULONGLONG kOften = 50;
    const ULONGLONG start = GetTickCount64();
    for (;;) {
        if (holds())
            co_return true;
        const ULONGLONG waited = GetTickCount64() - start;
        if (limit && static_cast<long long>(waited) >= limit->count())
            co_return false;
        if (waited < kOften) {
            MsgWaitForMultipleObjects(0, nullptr, FALSE, 1, QS_ALLINPUT);
            co_await NextTurn();
        } else {
            co_await Delay(std::chrono::milliseconds(USER_TIMER_MINIMUM));
        }
    }
}

void Event::Set() {
    if (set_)
        return;
    set_ = true;
    for (const WaitId id : std::exchange(waiting_, {}))
        Wake(id);
}

} // namespace gui
