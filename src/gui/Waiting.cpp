#include "gui/Waiting.h"

#include "gui/Aside.h"
#include "gui/FormSlot.h"
#include "gui/frmWaiting.h"

namespace gui {

namespace {

/// After this time the operator is told what is waited for.
constexpr std::chrono::seconds kUntold{1};

} // namespace

WaitInSight::WaitInSight() : action_(detail::Action::Running()), outer_(action_->Seen()) {
    action_->Seen(this);
}

WaitInSight::~WaitInSight() {
    action_->Seen(outer_);
}

std::string WaitingText(const std::string& what) {
    return "Waiting for an answer from " + (what.empty() ? std::string("the system") : what);
}

Waiting::Waiting(Form& form) : form_(form) {}

Waiting::~Waiting() {
    // Before the window above it goes, or the system would activate some other program's window.
    disabled_.reset();
}

void Waiting::Suspended(const std::string& what) {
    what_ = what;
    if (window_)
        (*window_)->What(what_);
    if (disabled_)
        return;
    disabled_.emplace(GetAncestor(form_.Window(), GA_ROOT));
    // The call has been waited for plainly before.
    since_ = std::chrono::steady_clock::now() - kPlainWait;
    tasks_.Start(ShowInTime());
}

Task<> Waiting::ShowInTime() {
    co_await Delay(kUntold - kPlainWait);
    window_ = std::make_unique<Local<frmWaiting>>(CancelPressed(), since_);
    frmWaiting& window = **window_;
    window.Load(&form_, true);
    (*window_)->What(what_);
    // Whoever works in another window meanwhile goes on there.
    ShowWindow(window.Window(), SW_SHOWNOACTIVATE);
    if (GetForegroundWindow() == GetAncestor(form_.Window(), GA_ROOT))
        window.BringToFront();
}

} // namespace gui
