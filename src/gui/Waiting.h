#pragma once

#include "gui/Modality.h"
#include "gui/TaskWaits.h"

#include <memory>
#include <optional>
#include <string>

class frmWaiting;

namespace gui {

class Form;
template <class F> class Local;

/// Lets somebody see what a task waits for, and end it. While one lives in a task, the calls that the task
/// makes aside, however deep, are waited for in its sight.
class WaitInSight {
public:
    WaitInSight(const WaitInSight&) = delete;
    WaitInSight& operator=(const WaitInSight&) = delete;

    /// The task gets NoAnswer from the call that it waits for, and from every other one.
    void Cancel() { cancelled_.Set(); }

    // For the calls aside.

    /// The task is going to be suspended until `what` answers.
    virtual void Suspended(const std::string& what) = 0;
    /// It goes on.
    virtual void Resumed() {}
    bool Cancelled() const { return cancelled_.IsSet(); }
    void WakeWhenCancelled(WaitId id) { cancelled_.Happened().Begin(id); }

protected:
    /// To be made in a task.
    WaitInSight();
    ~WaitInSight();
    Event& CancelPressed() { return cancelled_; }

private:
    detail::Action* action_;
    WaitInSight* outer_;
    Event cancelled_;
};

/// "Waiting for an answer from " and who is to answer.
std::string WaitingText(const std::string& what);

/// Waits in the operator's sight: from the moment that a call is not back at once the form takes no input;
/// after a second a small window says what is waited for and for how long, and offers Cancel. Everything else
/// goes on. What is asked of the operator comes before it or after it.
class Waiting final : public WaitInSight {
public:
    /// Runs in a task of the form, or of a page on it.
    explicit Waiting(Form& form);
    ~Waiting();

    void Suspended(const std::string& what) override;

private:
    Task<> ShowInTime();

    Form& form_;
    std::string what_;
    std::chrono::steady_clock::time_point since_;
    std::optional<Disabled> disabled_;
    std::unique_ptr<Local<frmWaiting>> window_;
    Tasks tasks_;
};

} // namespace gui
