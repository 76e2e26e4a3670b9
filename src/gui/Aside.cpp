#include "gui/Aside.h"

#include "common/Numbers.h"
#include "gui/Waiting.h"

#include <algorithm>
#include <thread>
#include <vector>

namespace gui {

namespace detail {

namespace {

/// A thread that makes one call after the other.
class Worker {
public:
    Worker() {
        std::thread([this] { MakeCalls(); }).detach();
    }

    /// False when it is busy.
    bool Take(const std::shared_ptr<AsideCall>& call) {
        if (!idle_.exchange(false))
            return false;
        AcquireSRWLockExclusive(&lock_);
        call_ = call;
        ReleaseSRWLockExclusive(&lock_);
        WakeConditionVariable(&work_);
        return true;
    }
    bool Idle() const { return idle_; }

private:
    [[noreturn]] void MakeCalls() {
        for (;;) {
            {
                const std::shared_ptr<AsideCall> call = NextCall();
                call->Make();
                call->Tell();
                // An abandoned call is destroyed here, which may block as the call did.
            }
            idle_ = true;
        }
    }

    std::shared_ptr<AsideCall> NextCall() {
        AcquireSRWLockExclusive(&lock_);
        while (!call_)
            SleepConditionVariableSRW(&work_, &lock_, INFINITE, 0);
        std::shared_ptr<AsideCall> call = std::move(call_);
        ReleaseSRWLockExclusive(&lock_);
        return call;
    }

    SRWLOCK lock_ = SRWLOCK_INIT;
    CONDITION_VARIABLE work_ = CONDITION_VARIABLE_INIT;
    std::shared_ptr<AsideCall> call_;
    std::atomic<bool> idle_ = true;
};

/// They stay to the end of the program, with their threads.
std::vector<Worker*>& Workers() {
    static std::vector<Worker*> workers;
    return workers;
}

/// The program's first thread, which initialises this, is the one of windows and tasks.
const DWORD ownThread = GetCurrentThreadId();

bool TakenByWorker(const std::shared_ptr<AsideCall>& call) {
    for (Worker* worker : Workers())
        if (worker->Take(call))
            return true;
    return false;
}

} // namespace

void Latch::Set() {
    AcquireSRWLockExclusive(&lock_);
    set_ = true;
    ReleaseSRWLockExclusive(&lock_);
    WakeAllConditionVariable(&news_);
}

bool Latch::IsSetWithin(std::chrono::milliseconds time) {
    const ULONGLONG end = GetTickCount64() + static_cast<ULONGLONG>(time.count());
    AcquireSRWLockExclusive(&lock_);
    for (ULONGLONG now = GetTickCount64(); !set_ && now < end; now = GetTickCount64())
        SleepConditionVariableSRW(&news_, &lock_, static_cast<DWORD>(end - now), 0);
    ReleaseSRWLockExclusive(&lock_);
    return set_;
}

void AsideCall::Make() noexcept {
    try {
        Call();
    } catch (...) {
        error_ = std::current_exception();
    }
}

void AsideCall::Tell() noexcept {
    over_.Set();
    // Whoever waits for the number has held up the window for all of kPlainWait, and may do so again at once.
    if (const WaitId id = waiting_.exchange(0))
        WakeAfterOthers(id);
}

void AsideCall::WakeWhenOver(WaitId id) {
    waiting_ = id;
    // Whichever of the two threads comes second takes the number.
    if (IsOver() && waiting_.exchange(0))
        WakeAfterOthers(id);
}

void MakeAside(std::shared_ptr<AsideCall> call) {
    // A thread whose call has just been told of is idle a moment later.
    constexpr int kLooks = 50;
    for (int look = 0; look < kLooks; ++look) {
        if (TakenByWorker(call))
            return;
        if (Workers().empty())
            break;
        SwitchToThread();
    }
    Workers().push_back(new Worker);
    TakenByWorker(call);
}

bool AsideOver::IsOverAtOnce() const {
    using std::chrono::milliseconds;
    if (IsCancelled())
        return true;
    if (!made_)
        MakeAside(call_);
    const auto left = kPlainWait - std::chrono::duration_cast<milliseconds>(action_->OfPiece());
    return call_->IsOverWithin(std::max(left, milliseconds(0)));
}

void AsideOver::TellWaiting() const {
    if (action_->Seen())
        action_->Seen()->Suspended(awaited_.what);
}

void AsideOver::WakeIn(WaitId id) const {
    call_->WakeWhenOver(id);
    if (action_->Seen())
        action_->Seen()->WakeWhenCancelled(id);
    if (awaited_.limit)
        WakeAfter(id, *awaited_.limit);
}

bool AsideOver::IsCancelled() const {
    return action_->Seen() && action_->Seen()->Cancelled();
}

void AsideOver::await_resume() const {
    if (action_->Seen())
        action_->Seen()->Resumed();
    if (call_->IsOver())
        return;
    if (IsCancelled())
        throw NoAnswer("Operation has been cancelled by the user.", true);
    throw NoAnswer(awaited_.what + " has not answered for " + common::SecondsText(*awaited_.limit) + ".",
                   false);
}

} // namespace detail

NoAnswer::NoAnswer(const std::string& description, bool cancelled)
    : RuntimeError(common::kDeviceUnavailable, description), cancelled_(cancelled) {}

bool OnOwnThread() {
    return GetCurrentThreadId() == detail::ownThread;
}

bool CallsAreAside() {
    for (const detail::Worker* worker : detail::Workers())
        if (!worker->Idle())
            return true;
    return false;
}

} // namespace gui
