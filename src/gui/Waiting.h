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

/// Lets the operator see what a task waits for, and end it. While one lives in a task, the calls that it
/// makes aside, however deep, are waited for in sight: from the moment that one of them is not back at once
/// the form takes no input; after a second a small window says what is waited for and for how long, and
/// offers Cancel. Everything else goes on. What is asked of the operator comes before it or after it.
class Waiting {
public:
    /// Runs in a task of the form, or of a page on it.
    explicit Waiting(Form& form);
    ~Waiting();
    Waiting(const Waiting&) = delete;
    Waiting& operator=(const Waiting&) = delete;

    // For the calls aside.

    /// The task is going to be suspended until `what` answers.
    void Suspended(const std::string& what);
    /// Cancel was pressed: the task gets NoAnswer from this call and from every other one.
    bool Cancelled() const { return cancelled_.IsSet(); }
    void WakeWhenCancelled(WaitId id) { cancelled_.Happened().Begin(id); }

private:
    Task<> ShowInTime();

    Form& form_;
    detail::Action* action_;
    Waiting* outer_;
    std::string what_;
    std::chrono::steady_clock::time_point since_;
    std::optional<Disabled> disabled_;
    Event cancelled_;
    std::unique_ptr<Local<frmWaiting>> window_;
    Tasks tasks_;
};

} // namespace gui
