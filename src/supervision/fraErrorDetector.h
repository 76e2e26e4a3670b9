#pragma once

#include "gui/Control.h"
#include "gui/Menu.h"
#include "gui/TabPanel.h"
#include "gui/Text.h"
#include "gui/Timer.h"
#include "servers/ServerWatch.h"
#include "supervision/ErrorDetector.h"
#include "supervision/fraErrorDetector.ids.h"
#include "supervision/PanelState.h"
#include "supervision/ServerMaintainer.h"

/// The control panel's page for the error detector and the server maintainer.
class fraErrorDetector final : public gui::TabPage {
public:
    /// The entries of the panel's menu that check and clear a box of the page. Each caption says which of the
    /// two a choice would do now ("Enable ..." or "Disable ...").
    struct Twins {
        gui::MenuItem& mnuEnableErrorDetector;
        gui::MenuItem& mnuClosePopups;
        gui::MenuItem& mnuCheckProcesses;
    };

    fraErrorDetector(gui::TabPanel& panel, PanelState& state, const Twins& twins)
        : TabPage(panel, IDD_fraErrorDetector), twins_(twins),
          detector_(state.log, state.kerno, [this] { return DetectorSettings(); }), maintainer_(state.kerno) {
    }

    gui::CheckBox chkErrorDetector{*this, IDC_fraErrorDetector_chkErrorDetector,
                                   &fraErrorDetector::chkErrorDetector_Click};
    gui::Label lblIntervalError{*this, IDC_fraErrorDetector_lblIntervalError};
    gui::TextBox txtErrorCheckInterval{*this, IDC_fraErrorDetector_txtErrorCheckInterval,
                                       &fraErrorDetector::txtErrorCheckInterval_Change};
    gui::Label lblseconds{*this, IDC_fraErrorDetector_lblseconds};

    gui::CheckBox chkHandlePopups{*this, IDC_fraErrorDetector_chkHandlePopups,
                                  &fraErrorDetector::chkHandlePopups_Click};
    gui::OptionButton optIgnorePopup{*this, IDC_fraErrorDetector_optIgnorePopup};
    gui::OptionButton optRestartAllPopup{*this, IDC_fraErrorDetector_optRestartAllPopup};
    gui::CheckBox chkLogError{*this, IDC_fraErrorDetector_chkLogError, &fraErrorDetector::chkLogError_Click};
    gui::Label lblErrorLogsFilename{*this, IDC_fraErrorDetector_lblErrorLogsFilename};
    gui::TextBox txtLogFilename{*this, IDC_fraErrorDetector_txtLogFilename};
    gui::CheckBox chkSendMessage{*this, IDC_fraErrorDetector_chkSendMessage,
                                 &fraErrorDetector::chkSendMessage_Click};
    gui::Label lblErrorMessage{*this, IDC_fraErrorDetector_lblErrorMessage};
    gui::TextBox txtErrorMessage{*this, IDC_fraErrorDetector_txtErrorMessage};

    gui::CheckBox chkCheckServerProcesses{*this, IDC_fraErrorDetector_chkCheckServerProcesses,
                                          &fraErrorDetector::chkCheckServerProcesses_Click};
    gui::CheckBox chkLoginServer{*this, IDC_fraErrorDetector_chkLoginServer};
    gui::CheckBox chkCharacterServer{*this, IDC_fraErrorDetector_chkCharacterServer};
    gui::CheckBox chkZoneServer{*this, IDC_fraErrorDetector_chkZoneServer};

    gui::Label lblLoginState{*this, IDC_fraErrorDetector_lblLoginState};
    gui::Label lblCharacterState{*this, IDC_fraErrorDetector_lblCharacterState};
    gui::Label lblZoneState{*this, IDC_fraErrorDetector_lblZoneState};
    gui::Label lblStubbornDialog{*this, IDC_fraErrorDetector_lblStubbornDialog};
    gui::CommandButton cmdBringDialogToFront{*this, IDC_fraErrorDetector_cmdBringDialogToFront,
                                             &fraErrorDetector::cmdBringDialogToFront_Click};

    gui::Timer tmrState{*this, std::chrono::seconds(1), &fraErrorDetector::tmrState_Timer};
    gui::Timer tmrErrorDetector{*this, std::chrono::seconds(0), &fraErrorDetector::tmrErrorDetector_Timer,
                                false};

private:
    void chkErrorDetector_Click();
    void txtErrorCheckInterval_Change();
    void chkHandlePopups_Click();
    void chkLogError_Click();
    void chkSendMessage_Click();
    void chkCheckServerProcesses_Click();
    void cmdBringDialogToFront_Click();
    void tmrState_Timer();
    void tmrErrorDetector_Timer();
    gui::Task<> HandleAndMaintain();

    /// Nothing while the detector is off.
    std::optional<supervision::ErrorDetectorSettings> DetectorSettings() const;
    supervision::MaintainerSettings MaintainerSettings() const;

    Twins twins_;
    supervision::ErrorDetector detector_;
    supervision::ServerMaintainer maintainer_;
    modServerControl::ServerWatch watch_;
    bool handling_ = false;
};

namespace supervision {

/// The time between two checks for what was typed as their seconds. Nothing, no number and a number below 0
/// give 0, with which a timer does not fire; a number beyond the longest that a timer can wait (24 days)
/// gives that.
std::chrono::milliseconds CheckInterval(const std::string& seconds);

} // namespace supervision
