#include "supervision/fraConnections.h"

#include "gui/MsgBox.h"
#include "supervision/frmIPDetection.h"

supervision::Addresses fraConnections::ShowAddresses() {
    supervision::Addresses addresses = monitor_.Look();
    for (const std::string& message : addresses.messages)
        gui::MsgBoxNow(message);
    txtCurrentIPAddress.Text(addresses.current);
    txtDetectedIPAddress.Text(addresses.detected.empty() ? "IP Detection Failed" : addresses.detected);
    return addresses;
}

supervision::IPChangeSettings fraConnections::Settings() const {
    supervision::IPChangeSettings settings{.enabled = chkOnIPChanges.Value() != 0,
                                           .modifyIni = chkModifyAshMelder.Value() != 0,
                                           .restart = chkRestartServer.Value() != 0,
                                           .message = {}};
    if (chkSendMessageIPChange.Value())
        settings.message = txtMessageIPChange.Text();
    return settings;
}

void fraConnections::tmrMonitorIP_Timer() {
    const supervision::Addresses addresses = ShowAddresses();
    // A message box of a failed detection may have outlived the page, whose settings are gone then.
    monitor_.Act(addresses, Settings());
}

void fraConnections::chkOnIPChanges_Click() {
    const bool on = chkOnIPChanges.Value() != 0;
    chkModifyAshMelder.Enabled(on);
    chkRestartServer.Enabled(on);
}

void fraConnections::chkRestartServer_Click() {
    chkSendMessageIPChange.Enabled(chkRestartServer.Value() != 0);
}

void fraConnections::chkSendMessageIPChange_Click() {
    const bool on = chkSendMessageIPChange.Value() != 0;
    txtMessageIPChange.Enabled(on);
    lblMessagetoPlayers.Enabled(on);
}

void fraConnections::cmdIPDetectionSettings_Click() {
    frmIPDetection().ShowModalNow(Panel().Parent());
}
