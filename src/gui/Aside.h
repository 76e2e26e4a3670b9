#pragma once

#include "common/RuntimeError.h"
#include "gui/Task.h"

#include <windows.h>

#include <atomic>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>

namespace gui {

namespace detail {

/// Set once, by one thread, and waited for by another. Neither makes an object of the system's kernel for it,
/// which would cost more than many of the calls that are made aside.
class Latch {
public:
    void Set();
    bool IsSet() const { return set_; }
    /// True when it is set within the time.
    bool IsSetWithin(std::chrono::milliseconds time);

private:
    std::atomic<bool> set_ = false;
    SRWLOCK lock_ = SRWLOCK_INIT;
    CONDITION_VARIABLE news_ = CONDITION_VARIABLE_INIT;
};

/// A call that is made aside: shared by the task that awaits it and the thread that makes it. Whoever is the
/// last to let go of it destroys what the call holds.
class AsideCall {
public:
    AsideCall() = default;
    virtual ~AsideCall() = default;
    AsideCall(const AsideCall&) = delete;
    AsideCall& operator=(const AsideCall&) = delete;

    /// On the thread aside: makes the call.
    void Make() noexcept;
    /// On the thread aside: tells the task that the call is over.
    void Tell() noexcept;
    bool IsOver() const { return over_.IsSet(); }
    /// True when the call is over within the time.
    bool IsOverWithin(std::chrono::milliseconds time) { return over_.IsSetWithin(time); }
    /// The wait is to be waked when the call is over, at once where it is already.
    void WakeWhenOver(WaitId id);

protected:
    virtual void Call() = 0;
    std::exception_ptr error_;

private:
    Latch over_;
    std::atomic<WaitId> waiting_ = 0;
};

template <class F> class AsideCallOf final : public AsideCall {
public:
    using Result = std::invoke_result_t<F&>;
    explicit AsideCallOf(F call) : call_(std::move(call)) {}

    Result Take() {
        if (error_)
            std::rethrow_exception(error_);
        if constexpr (!std::is_void_v<Result>)
            return std::move(*result_);
    }

private:
    void Call() override {
        if constexpr (std::is_void_v<Result>)
            call_();
        else
            result_.emplace(call_());
    }

    F call_;
    std::optional<std::conditional_t<std::is_void_v<Result>, char, Result>> result_;
};

/// Hands the call to a thread that is idle, or to a new one.
void MakeAside(std::shared_ptr<AsideCall> call);

} // namespace detail

/// For as long as this a call aside is simply waited for: most calls are over by then, cost no more than when
/// they were made directly, and let nothing else run in between. Calls that follow each other share it, so
/// that a row of quick ones does not hold up the message loop either.
inline constexpr std::chrono::milliseconds kPlainWait{200};

/// What a call aside is waited for.
struct Awaited {
    /// Who is to answer, as a sentence names it.
    std::string what;
    /// None for as long as it takes.
    std::optional<std::chrono::milliseconds> limit;
};

/// Raised where a call aside is waited for no longer. The call goes on; what comes of it is not used.
class NoAnswer : public RuntimeError {
public:
    NoAnswer(const std::string& description, bool cancelled);
    /// By the operator; by the limit otherwise.
    bool Cancelled() const { return cancelled_; }

private:
    bool cancelled_;
};

namespace detail {

class AsideOver {
public:
    /// `made` where the call is aside already.
    AsideOver(std::shared_ptr<AsideCall> call, Awaited awaited, bool made)
        : call_(std::move(call)), awaited_(std::move(awaited)), made_(made) {}

    bool await_ready() const noexcept { return false; }
    template <class P> void await_suspend(std::coroutine_handle<P> at) {
        action_ = at.promise().action;
        if (IsOverAtOnce()) {
            action_->Next(at);
        } else {
            TellWaiting();
            WakeIn(action_->WaitAt(at));
        }
    }
    /// Raises NoAnswer.
    void await_resume() const;

private:
    bool IsOverAtOnce() const;
    void TellWaiting() const;
    void WakeIn(WaitId id) const;
    bool IsCancelled() const;

    std::shared_ptr<AsideCall> call_;
    Awaited awaited_;
    bool made_;
    Action* action_ = nullptr;
};

template <class F>
Task<typename AsideCallOf<F>::Result> TakeOver(std::shared_ptr<AsideCallOf<F>> call, Awaited awaited,
                                               bool made) {
    AsideOver over(call, std::move(awaited), made);
    co_await over;
    co_return call->Take();
}

} // namespace detail

/// Makes one call that may block on a thread that does nothing else, and returns what it returns or raises
/// what it raises:
///
///     auto call = [connection] { return connection->Open(); };
///     const int answer = co_await Aside(call);
///
/// Raises NoAnswer when the limit of `awaited` is over, and when the operator cancels (see Waiting).
///
/// A task that ends meanwhile, or gets NoAnswer, abandons the call, which goes on: the call must own all that
/// it uses (by value, or shared); it is moved away from. It touches no window and no object of the tool's
/// own. It has a name, because this compiler destroys a closure twice that is a temporary of a co_await.
template <class F> Task<typename detail::AsideCallOf<F>::Result> Aside(F& call, const Awaited& awaited = {}) {
    return detail::TakeOver(std::make_shared<detail::AsideCallOf<F>>(std::move(call)), awaited, false);
}

/// As Aside, but the call is made now and goes on beside whatever is done before the task is awaited. A task
/// that is let go instead abandons it.
template <class F> auto AsideMeanwhile(F& call, const Awaited& awaited = {}) {
    auto made = std::make_shared<detail::AsideCallOf<F>>(std::move(call));
    detail::MakeAside(made);
    return detail::TakeOver(std::move(made), awaited, true);
}

/// Makes a call aside that nobody waits for.
template <class F> void AsideUnawaited(F call) {
    detail::MakeAside(std::make_shared<detail::AsideCallOf<F>>(std::move(call)));
}

/// True on the thread of windows and tasks.
bool OnOwnThread();

/// Shares an object whose end may block: where its last owner lets it go on the thread of windows and tasks,
/// it is ended aside.
template <class T> std::shared_ptr<T> EndedAside(std::unique_ptr<T> object) {
    return {object.release(), [](T* last) {
                if (OnOwnThread())
                    AsideUnawaited([last] { delete last; });
                else
                    delete last;
            }};
}

/// True while a call aside has not come back: the program cannot end in the ordinary way then, because the
/// libraries that such a call is in would be taken down around it.
bool CallsAreAside();

} // namespace gui
