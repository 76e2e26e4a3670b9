#include "gui/Task.h"

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

} // namespace gui
