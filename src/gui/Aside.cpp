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
    Worker() : work_(CreateEventA(nullptr, FALSE, FALSE, nullptr)) {
        std::thread([this] { MakeCalls(); }).detach();
    }

    /// False when it is busy.
    bool Take(const std::shared_ptr<AsideCall>& call) {
        if (!idle_.exchange(false))
            return false;
        call_ = call;
        SetEvent(work_);
        return true;
    }
    bool Idle() const { return idle_; }

private:
    [[noreturn]] void MakeCalls() {
        for (;;) {
            WaitForSingleObject(work_, INFINITE);
            {
                const std::shared_ptr<AsideCall> call = std::move(call_);
                call->Make();
                call->Tell();
                // An abandoned call is destroyed here, which may block as the call did.
            }
            idle_ = true;
        }
    }

    HANDLE work_;
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

AsideCall::AsideCall() : over_(CreateEventA(nullptr, TRUE, FALSE, nullptr)) {}

AsideCall::~AsideCall() {
    CloseHandle(over_);
}

void AsideCall::Make() noexcept {
    try {
        Call();
    } catch (...) {
        error_ = std::current_exception();
    }
}

void AsideCall::Tell() noexcept {
    told_ = true;
    SetEvent(over_);
    if (const WaitId id = waiting_.exchange(0))
        Wake(id);
}

bool AsideCall::OverWithin(std::chrono::milliseconds time) const {
    return WaitForSingleObject(over_, static_cast<DWORD>(time.count())) == WAIT_OBJECT_0;
}

void AsideCall::WakeWhenOver(WaitId id) {
    waiting_ = id;
    // Whichever of the two threads comes second takes the number.
    if (told_ && waiting_.exchange(0))
        Wake(id);
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
    MakeAside(call_);
    const auto left = kPlainWait - std::chrono::duration_cast<milliseconds>(action_->OfPiece());
    return call_->OverWithin(std::max(left, milliseconds(0)));
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
    if (call_->OverWithin(std::chrono::milliseconds(0)))
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
