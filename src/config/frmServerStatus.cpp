#include "config/frmServerStatus.h"

#include "common/Files.h"
#include "common/Numbers.h"
#include "common/Text.h"
#include "config/ZoneTitle.h"
#include "gui/modGUI.h"
#include "gui/ToolTips.h"
#include "servers/modServerControl.h"
#include "servers/WindowOrigin.h"

#include <shellapi.h>

void frmServerStatus::Form_Load() {
    kTools_.INIPath(settings::kToolsIniPath());
    const std::string folder = common::LogFolder();
    for (Channel& channel : channels_) {
        channel.log.LogFilename(channel.logFile);
        channel.log.LogPath(folder);
        channel.origin.clear();
    }
    traffic_ = config::TrafficMeter(totals_());
    for (const Channel& channel : channels_)
        channel.mnuLog.Checked(common::Val(kTools_.INIProperty(channel.key)) != 0);
    AnchorControls();
}

void frmServerStatus::AnchorControls() {
    constexpr double kThird = 1.0 / 3;
    anchors_.Add(fraTraffic, {0, 0, 1, 0});
    anchors_.Add(picSpeeds, {0, 0, 1, 0});
    // Each message box takes a third of the growth.
    anchors_.Add(lblLoginMore, {1, 0, 1, 0});
    anchors_.Add(lblCharacterMore, {1, kThird, 1, kThird});
    anchors_.Add(lblZoneMore, {1, 2 * kThird, 1, 2 * kThird});
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

void frmServerStatus::Form_ContextMenu(HWND control, POINT at) {
    (control == picSpeeds.Window() ? mnuStats : mnuFormMenu).Show(at);
}

void frmServerStatus::mnuAlwaysOnTop_Click() {
    mnuAlwaysOnTop.Checked(!mnuAlwaysOnTop.Checked());
    modGUI::SetFormOnTop(*this, mnuAlwaysOnTop.Checked());
}

void frmServerStatus::SwitchLog(modServerControl::Server server) {
    const Channel& channel = ChannelOf(server);
    channel.mnuLog.Checked(!channel.mnuLog.Checked());
    kTools_.INIProperty(channel.key, channel.mnuLog.Checked() ? "-1" : "0");
}

void frmServerStatus::FindIn(modServerControl::Server server) {
    const Channel& channel = ChannelOf(server);
    find_.OpenFor(*this, channel.box, channel.name);
}

bool frmServerStatus::Form_Key(HWND control, int virtualKey) {
    const bool opens = virtualKey == 'F' && GetKeyState(VK_CONTROL) < 0;
    if (virtualKey == VK_F3 && find_.Loaded()) {
        find_.cmdNext.Press();
    } else if (opens || virtualKey == VK_F3) {
        const auto focused =
            std::ranges::find(channels_, control, [](const Channel& each) { return each.box.Window(); });
        FindIn(focused != channels_.end() ? focused->server : modServerControl::Server::Zone);
    } else {
        return false;
    }
    return true;
}

void frmServerStatus::OpenLog(modServerControl::Server server) {
    const Channel& channel = ChannelOf(server);
    const std::string path = channel.log.LogPath() + channel.log.LogFilename();
    if (!common::FileExists(path))
        Tell("There is no log yet: check \"Log " + std::string(channel.name) + " Messages\" in this menu.");
    else
        ShellExecuteA(Window(), "open", path.c_str(), nullptr, nullptr, SW_SHOWNORMAL);
}

// ---- Every second

void frmServerStatus::tmrUpdate_Timer() {
    UpdateZone();
    UpdateTraffic();
    UpdateMarks();
}

void frmServerStatus::UpdateMarks() {
    for (const Channel& channel : channels_)
        channel.more.Visible(!channel.box.EndInView());
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
    for (Channel& channel : channels_) {
        TellOrigin(channel);
        const std::string text = modServerControl::ReadLog(channel.server);
        if (text.empty())
            continue;
        if (channel.logged && channel.mnuLog.Checked())
            channel.log.WriteLog(text, false);
        channel.box.Append(std::string(common::kLineEnd) + text);
    }
}

void frmServerStatus::TellOrigin(Channel& channel) {
    const std::string origin = modServerControl::WindowOrigin(channel.server);
    // A hint that is put in anew vanishes where it is being read.
    if (origin == channel.origin)
        return;
    channel.origin = origin;
    gui::SetToolTip(Window(), channel.box.Window(), origin);
}
