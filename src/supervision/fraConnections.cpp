#include "supervision/fraConnections.h"

#include "gui/FormSlot.h"
#include "gui/MsgBox.h"
#include "supervision/frmIPDetection.h"

gui::Task<supervision::Addresses> fraConnections::ShowAddresses() {
    supervision::Addresses addresses = co_await monitor_.Look();
    for (const std::string& message : addresses.messages)
        Tell(message, MB_OK, gui::kApplicationTitle);
    txtCurrentIPAddress.Text(addresses.current);
    txtDetectedIPAddress.Text(addresses.detected.empty() ? "IP Detection Failed" : addresses.detected);
    co_return addresses;
}

gui::Task<> fraConnections::ShowFirst() {
    co_await ShowAddresses();
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

gui::Task<> fraConnections::tmrMonitorIP_Timer() {
    const supervision::Addresses addresses = co_await ShowAddresses();
    co_await monitor_.Act(addresses, Settings());
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

gui::Task<> fraConnections::cmdIPDetectionSettings_Click() {
    gui::Local<frmIPDetection> form;
    co_await form->ShowModal(Panel().Parent());
    // It may be looked up in another way now.
    co_await ShowAddresses();
}
