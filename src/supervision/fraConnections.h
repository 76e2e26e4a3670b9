#pragma once

#include "gui/Control.h"
#include "gui/TabPanel.h"
#include "gui/Text.h"
#include "gui/Timer.h"
#include "supervision/fraConnections.ids.h"
#include "supervision/IPChangeMonitor.h"
#include "supervision/PanelState.h"

/// The control panel's page for the IP change monitor.
class fraConnections final : public gui::TabPage {
public:
    fraConnections(gui::TabPanel& panel, PanelState& state)
        : TabPage(panel, IDD_fraConnections), monitor_(state.kTools, state.kerno) {}

    gui::Label lblashMelderIP{*this, IDC_fraConnections_lblashMelderIP};
    gui::TextBox txtCurrentIPAddress{*this, IDC_fraConnections_txtCurrentIPAddress,
                                     &fraConnections::txtCurrentIPAddress_KeyPress};
    gui::Label lblDetectedIPAddress{*this, IDC_fraConnections_lblDetectedIPAddress};
    gui::TextBox txtDetectedIPAddress{*this, IDC_fraConnections_txtDetectedIPAddress,
                                      &fraConnections::txtDetectedIPAddress_KeyPress};

    gui::CheckBox chkOnIPChanges{*this, IDC_fraConnections_chkOnIPChanges,
                                 &fraConnections::chkOnIPChanges_Click};
    gui::CheckBox chkModifyAshMelder{*this, IDC_fraConnections_chkModifyAshMelder};
    gui::CheckBox chkRestartServer{*this, IDC_fraConnections_chkRestartServer,
                                   &fraConnections::chkRestartServer_Click};
    gui::CheckBox chkSendMessageIPChange{*this, IDC_fraConnections_chkSendMessageIPChange,
                                         &fraConnections::chkSendMessageIPChange_Click};
    gui::Label lblMessagetoPlayers{*this, IDC_fraConnections_lblMessagetoPlayers};
    gui::TextBox txtMessageIPChange{*this, IDC_fraConnections_txtMessageIPChange};

    gui::CommandButton cmdIPDetectionSettings{*this, IDC_fraConnections_cmdIPDetectionSettings,
                                              &fraConnections::cmdIPDetectionSettings_Click};

    // A new address reaches the players soon enough, and a name server is not bothered.
    gui::Timer tmrMonitorIP{*this, std::chrono::minutes(3), &fraConnections::tmrMonitorIP_Timer};

    /// Detects the address, shows it beside the one in Kerno.ini and returns both.
    gui::Task<supervision::Addresses> ShowAddresses();
    gui::Task<> ShowFirst();

private:
    void txtCurrentIPAddress_KeyPress(int& key) { key = 0; }
    void txtDetectedIPAddress_KeyPress(int& key) { key = 0; }
    void chkOnIPChanges_Click();
    void chkRestartServer_Click();
    void chkSendMessageIPChange_Click();
    gui::Task<> cmdIPDetectionSettings_Click();
    gui::Task<> tmrMonitorIP_Timer();

    supervision::IPChangeSettings Settings() const;

    supervision::IPChangeMonitor monitor_;
};
