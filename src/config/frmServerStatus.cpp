#include "config/frmServerStatus.h"

#include "common/Numbers.h"
#include "common/Text.h"
#include "config/ZoneTitle.h"
#include "gui/modGUI.h"
#include "servers/modServerControl.h"
#include "settings/kToolsSettings.h"

namespace key = settings::key;

void frmServerStatus::Form_Load() {
    kTools_.INIPath(settings::kToolsIniPath());
    PrepareLogs();
    traffic_ = config::TrafficMeter(totals_());
    const auto logs = [this](std::string_view name) { return common::Val(kTools_.INIProperty(name)) != 0; };
    mnuLogLogin.Checked(logs(key::kLogLogin));
    mnuLogCharacter.Checked(logs(key::kLogCharacter));
    mnuLogZone.Checked(logs(key::kLogZone));
    AnchorControls();
}

void frmServerStatus::PrepareLogs() {
    loginLog_.LogFilename("LoginServer.log");
    characterLog_.LogFilename("CharacterServer.log");
    zoneLog_.LogFilename("ZoneServer.log");
    const std::string folder = common::LogFolder();
    for (clsLog* log : {&loginLog_, &characterLog_, &zoneLog_})
        log->LogPath(folder);
}

void frmServerStatus::AnchorControls() {
    constexpr double kThird = 1.0 / 3;
    anchors_.Add(fraTraffic, {0, 0, 1, 0});
    anchors_.Add(picSpeeds, {0, 0, 1, 0});
    // Each message box takes a third of the growth.
    anchors_.Add(txtLoginStatus, {0, 0, 1, kThird});
    anchors_.Add(lblCharacterHead, {0, kThird, 0, kThird});
    anchors_.Add(txtCharacterStatus, {0, kThird, 1, 2 * kThird});
    anchors_.Add(lblZoneHead, {0, 2 * kThird, 0, 2 * kThird});
    anchors_.Add(txtZoneStatus, {0, 2 * kThird, 1, 1});
}

void frmServerStatus::Form_MouseDown(gui::MouseButton button, int /*x*/, int /*y*/) {
    if (button == gui::MouseButton::Right)
        mnuFormMenu.Show();
}

void frmServerStatus::fraTraffic_MouseDown(gui::MouseButton button, int /*x*/, int /*y*/) {
    if (button == gui::MouseButton::Right)
        mnuStats.Show();
}

void frmServerStatus::mnuAlwaysOnTop_Click() {
    mnuAlwaysOnTop.Checked(!mnuAlwaysOnTop.Checked());
    modGUI::SetFormOnTop(*this, mnuAlwaysOnTop.Checked());
}

void frmServerStatus::SwitchLog(gui::MenuItem& item, std::string_view key) {
    item.Checked(!item.Checked());
    kTools_.INIProperty(key, item.Checked() ? "-1" : "0");
}

void frmServerStatus::mnuLogLogin_Click() {
    SwitchLog(mnuLogLogin, key::kLogLogin);
}
void frmServerStatus::mnuLogCharacter_Click() {
    SwitchLog(mnuLogCharacter, key::kLogCharacter);
}
void frmServerStatus::mnuLogZone_Click() {
    SwitchLog(mnuLogZone, key::kLogZone);
}

// ---- Every second

void frmServerStatus::tmrUpdate_Timer() {
    UpdateZone();
    UpdateTraffic();
}

void frmServerStatus::UpdateZone() {
    config::ZoneStatus zone{"Not running..", "Not running.."};
    if (modServerControl::IsZoneRunning())
        zone = config::ParseZoneTitle(modServerControl::GetZoneTitle());
    lblServerUptime.Caption(zone.uptime);
    lblplayers.Caption(zone.players);
}

config::Traffic frmServerStatus::MachineTotals() {
    ipHelper_.Interfaces();
    return {ipHelper_.BytesReceived(), ipHelper_.BytesSent()};
}

void frmServerStatus::UpdateTraffic() {
    const auto figures = traffic_.Tick(totals_());
    lblReceived.Caption(common::ThousandsText(figures.amount.received));
    lblSent.Caption(common::ThousandsText(figures.amount.sent));
    if (!figures.speed)
        return;
    lblDownload.Caption(common::ThousandsText(figures.speed->received));
    lblUpload.Caption(common::ThousandsText(figures.speed->sent));
    picSpeeds.Add(*figures.speed);
}

// ---- Every five seconds

void frmServerStatus::tmrUpdateMessages_Timer() {
    using modServerControl::Server;
    // The login server's messages go to no log, whatever its check mark says: operators know that window as
    // it is, and the mark is kept for them.
    const struct {
        Server server;
        gui::RichTextBox& box;
        const clsLog* log;
    } channels[] = {
        {Server::Login, txtLoginStatus, nullptr},
        {Server::Character, txtCharacterStatus, mnuLogCharacter.Checked() ? &characterLog_ : nullptr},
        {Server::Zone, txtZoneStatus, mnuLogZone.Checked() ? &zoneLog_ : nullptr},
    };
    for (const auto& [server, box, log] : channels) {
        const std::string text = modServerControl::ReadLog(server);
        if (text.empty())
            continue;
        if (log)
            log->WriteLog(text, false);
        box.Append(std::string(common::kLineEnd) + text);
    }
}
