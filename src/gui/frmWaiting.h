#pragma once

#include "gui/Control.h"
#include "gui/frmWaiting.ids.h"
#include "gui/TaskWaits.h"
#include "gui/Timer.h"

#include <chrono>

/// Says what a task waits for and for how long, and offers to cancel it.
class frmWaiting final : public gui::Form {
public:
    /// `cancelled` happens when Cancel is pressed; `since` is when the wait began.
    frmWaiting(gui::Event& cancelled, std::chrono::steady_clock::time_point since)
        : Form(IDD_frmWaiting), cancelled_(cancelled), since_(since) {}

    gui::Label lblWhat{*this, IDC_frmWaiting_lblWhat};
    gui::Label lblTime{*this, IDC_frmWaiting_lblTime};
    gui::CommandButton cmdCancel{*this, IDC_frmWaiting_cmdCancel, &frmWaiting::cmdCancel_Click};
    gui::Timer tmrTime{*this, std::chrono::seconds(1), &frmWaiting::tmrTime_Timer};

    /// Who is to answer, as a sentence names it.
    void What(const std::string& what);

private:
    void Form_Load() override { tmrTime_Timer(); }
    // Closing the window is no way to leave the other one without input.
    void Form_Unload() override { cancelled_.Set(); }
    gui::CommandButton* CancelButton() override { return &cmdCancel; }

    void cmdCancel_Click();
    void tmrTime_Timer();

    gui::Event& cancelled_;
    std::chrono::steady_clock::time_point since_;
};
