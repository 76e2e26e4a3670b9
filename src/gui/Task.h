#pragma once

#include "gui/Scheduler.h"

#include <coroutine>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace gui {

template <class T = void> class Task;
class WaitInSight;

namespace detail {

/// A long action as a whole: the task that was started, and those that it awaits, one inside the other.
class Action : public std::enable_shared_from_this<Action> {
public:
    using Ended = std::function<void(std::exception_ptr error)>;

    /// `occupy` is called with 1 and -1 around every piece of the action that runs.
    Action(Task<> outermost, Ended ended, std::function<void(int)> occupy);
    ~Action();

    /// Runs until the action waits or is over.
    void Run();
    /// Ends it where it waits: the destructors of its tasks run, nothing else of it. Where it is running it
    /// ends at its next wait.
    void Cancel();
    bool Over() const { return over_; }

    /// The action that runs at this moment; null outside of every task.
    static Action* Running();
    /// In whose sight the action waits for calls aside; null for nobody's.
    WaitInSight* Seen() const { return seen_; }
    void Seen(WaitInSight* by) { seen_ = by; }
    /// How long the piece that runs has gone on without handing out messages.
    std::chrono::steady_clock::duration OfPiece() const {
        return std::chrono::steady_clock::now() - pieceBegan_;
    }

    /// What Run goes on with. Tasks hand over to each other here and not by calling each other, so that the
    /// stack is as deep after the thousandth as after the first.
    void Next(std::coroutine_handle<> next) { next_ = next; }
    /// The action waits: `at` goes on when the returned number is waked. Each number works once.
    WaitId WaitAt(std::coroutine_handle<> at);

private:
    void Finish(std::exception_ptr error);

    std::unique_ptr<Task<>> outermost_;
    Ended ended_;
    std::function<void(int)> occupy_;
    std::coroutine_handle<> next_;
    WaitId waiting_ = 0;
    WaitInSight* seen_ = nullptr;
    std::chrono::steady_clock::time_point pieceBegan_;
    bool running_ = false;
    bool cancelled_ = false;
    bool over_ = false;
};

struct PromiseBase {
    struct HandBack {
        bool await_ready() const noexcept { return false; }
        template <class P> void await_suspend(std::coroutine_handle<P> ended) const noexcept {
            ended.promise().action->Next(ended.promise().awaiting);
        }
        void await_resume() const noexcept {}
    };

    std::suspend_always initial_suspend() const noexcept { return {}; }
    HandBack final_suspend() const noexcept { return {}; }
    void unhandled_exception() noexcept { error = std::current_exception(); }

    Action* action = nullptr;
    std::coroutine_handle<> awaiting; ///< the task that awaits this one; none for the outermost
    std::exception_ptr error;
};

template <class T> struct Promise : PromiseBase {
    Task<T> get_return_object();
    template <class U> void return_value(U&& result) { value.emplace(std::forward<U>(result)); }
    T Take() {
        if (error)
            std::rethrow_exception(error);
        return std::move(*value);
    }
    std::optional<T> value;
};

template <> struct Promise<void> : PromiseBase {
    Task<void> get_return_object();
    void return_void() const noexcept {}
    void Take() const {
        if (error)
            std::rethrow_exception(error);
    }
};

} // namespace detail

/// A long action, or a part of one, written straight down as a coroutine: it is suspended where it waits, and
/// the message loop resumes it, whatever windows, boxes and other tasks are open or waiting. Begins when it
/// is awaited or started (Form::Start, Tasks::Start). Its result, or the exception that ended it, arrives at
/// whoever awaits it.
///
/// A task whose owner goes is destroyed where it waits: destructors run, nothing behind the wait does. A task
/// is a member or a free function with parameters by value, never a lambda with captures, which would be gone
/// before the first wait is over. A co_await stands alone in its statement.
template <class T> class [[nodiscard]] Task {
public:
    using promise_type = detail::Promise<T>;
    using Handle = std::coroutine_handle<promise_type>;

    explicit Task(Handle handle) : handle_(handle) {}
    Task(Task&& other) noexcept : handle_(std::exchange(other.handle_, {})) {}
    Task& operator=(Task&&) = delete;
    ~Task() {
        if (handle_)
            handle_.destroy();
    }

    struct Awaiter {
        Handle awaited;
        bool await_ready() const noexcept { return false; }
        template <class P> void await_suspend(std::coroutine_handle<P> awaiting) const noexcept {
            detail::PromiseBase& promise = awaited.promise();
            promise.action = awaiting.promise().action;
            promise.awaiting = awaiting;
            promise.action->Next(awaited);
        }
        T await_resume() const { return awaited.promise().Take(); }
    };
    Awaiter operator co_await() const& = delete;
    Awaiter operator co_await() && noexcept { return {handle_}; }

private:
    friend class detail::Action;
    Handle handle_;
};

template <class T> Task<T> detail::Promise<T>::get_return_object() {
    return Task<T>(std::coroutine_handle<Promise>::from_promise(*this));
}
inline Task<void> detail::Promise<void>::get_return_object() {
    return Task<void>(std::coroutine_handle<Promise>::from_promise(*this));
}

/// The tasks of one owner: a form, or the tool. They end with it.
class Tasks {
public:
    /// `occupy` is called with 1 and -1 around every piece of a task that runs.
    explicit Tasks(std::function<void(int)> occupy = {}) : occupy_(std::move(occupy)) {}
    ~Tasks() { Cancel(); }
    Tasks(const Tasks&) = delete;
    Tasks& operator=(const Tasks&) = delete;

    /// Runs the task up to its first wait and returns. `ended` is called once, when it is over or was ended;
    /// with the exception that ended it, if there was one.
    void Start(Task<> task, std::function<void(std::exception_ptr error)> ended = {});
    /// Ends all of them where they wait.
    void Cancel();
    /// True while one is not over.
    bool Any() const;

private:
    std::function<void(int)> occupy_;
    std::vector<std::shared_ptr<detail::Action>> actions_;
};

/// The number of started tasks, of all owners, that are not over.
int TasksUnderWay();

} // namespace gui
