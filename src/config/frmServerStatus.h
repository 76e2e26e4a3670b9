#pragma once

#include "common/clsLog.h"
#include "config/CIpHelper.h"
#include "config/frmFindMessage.h"
#include "config/frmServerStatus.ids.h"
#include "config/TrafficGraph.h"
#include "config/TrafficMeter.h"
#include "gui/Anchors.h"
#include "gui/Control.h"
#include "gui/Menu.h"
#include "gui/Text.h"
#include "gui/Timer.h"
#include "servers/Servers.h"
#include "settings/clsINI.h"
#include "settings/kToolsSettings.h"

#include <array>
#include <functional>

/// Shows what the three servers write into their message boxes, which it empties, and logs it on request;
/// the zone server's uptime and players; and the machine's network traffic since the window was opened.
class frmServerStatus final : public gui::Form {
public:
    /// The bytes that all interfaces have carried so far.
    using TotalsReader = std::function<config::Traffic()>;

    frmServerStatus() : Form(IDD_frmServerStatus) {}
    /// With totals from elsewhere than the machine's interfaces.
    explicit frmServerStatus(TotalsReader totals) : Form(IDD_frmServerStatus), totals_(std::move(totals)) {}

    gui::RichTextBox txtLoginStatus{*this, IDC_frmServerStatus_txtLoginStatus,
                                    &frmServerStatus::txtLoginStatus_Click,
                                    &frmServerStatus::txtLoginStatus_ContextMenu};
    gui::RichTextBox txtCharacterStatus{*this, IDC_frmServerStatus_txtCharacterStatus,
                                        &frmServerStatus::txtCharacterStatus_Click,
                                        &frmServerStatus::txtCharacterStatus_ContextMenu};
    gui::RichTextBox txtZoneStatus{*this, IDC_frmServerStatus_txtZoneStatus,
                                   &frmServerStatus::txtZoneStatus_Click,
                                   &frmServerStatus::txtZoneStatus_ContextMenu};
    // Seen while the newest messages of a box are not.
    gui::Label lblLoginMore{*this, IDC_frmServerStatus_lblLoginMore};
    gui::Label lblCharacterMore{*this, IDC_frmServerStatus_lblCharacterMore};
    gui::Label lblZoneMore{*this, IDC_frmServerStatus_lblZoneMore};
    gui::Label lblCharacterHead{*this, IDC_frmServerStatus_lblCharacterHead};
    gui::Label lblZoneHead{*this, IDC_frmServerStatus_lblZoneHead};
    gui::Label lblServerUptime{*this, IDC_frmServerStatus_lblServerUptime};
    gui::Label lblplayers{*this, IDC_frmServerStatus_lblplayers};
    gui::Frame fraTraffic{*this, IDC_frmServerStatus_fraTraffic, &frmServerStatus::fraTraffic_MouseDown};
    gui::Label lblReceived{*this, IDC_frmServerStatus_lblReceived};
    gui::Label lblSent{*this, IDC_frmServerStatus_lblSent};
    gui::Label lblDownload{*this, IDC_frmServerStatus_lblDownload};
    gui::Label lblUpload{*this, IDC_frmServerStatus_lblUpload};
    config::TrafficGraph picSpeeds{*this, IDC_frmServerStatus_picSpeeds};

    gui::PopupMenu mnuFormMenu{*this, IDR_frmServerStatus_mnuFormMenu};
    gui::PopupMenu mnuLoginMessage{*this, IDR_frmServerStatus_mnuLoginMessage};
    gui::PopupMenu mnuCharacterMessage{*this, IDR_frmServerStatus_mnuCharacterMessage};
    gui::PopupMenu mnuZoneMessage{*this, IDR_frmServerStatus_mnuZoneMessage};
    gui::PopupMenu mnuStats{*this, IDR_frmServerStatus_mnuStats};
    gui::MenuItem mnuAlwaysOnTop{*this, IDM_frmServerStatus_mnuAlwaysOnTop,
                                 &frmServerStatus::mnuAlwaysOnTop_Click};
    gui::MenuItem mnuClearLogin{*this, IDM_frmServerStatus_mnuClearLogin,
                                &frmServerStatus::mnuClearLogin_Click};
    gui::MenuItem mnuLogLogin{*this, IDM_frmServerStatus_mnuLogLogin, &frmServerStatus::mnuLogLogin_Click};
    gui::MenuItem mnuFindLogin{*this, IDM_frmServerStatus_mnuFindLogin, &frmServerStatus::mnuFindLogin_Click};
    gui::MenuItem mnuClearCharacter{*this, IDM_frmServerStatus_mnuClearCharacter,
                                    &frmServerStatus::mnuClearCharacter_Click};
    gui::MenuItem mnuLogCharacter{*this, IDM_frmServerStatus_mnuLogCharacter,
                                  &frmServerStatus::mnuLogCharacter_Click};
    gui::MenuItem mnuFindCharacter{*this, IDM_frmServerStatus_mnuFindCharacter,
                                   &frmServerStatus::mnuFindCharacter_Click};
    gui::MenuItem mnuOpenCharacter{*this, IDM_frmServerStatus_mnuOpenCharacter,
                                   &frmServerStatus::mnuOpenCharacter_Click};
    gui::MenuItem mnuClearZone{*this, IDM_frmServerStatus_mnuClearZone, &frmServerStatus::mnuClearZone_Click};
    gui::MenuItem mnuLogZone{*this, IDM_frmServerStatus_mnuLogZone, &frmServerStatus::mnuLogZone_Click};
    gui::MenuItem mnuFindZone{*this, IDM_frmServerStatus_mnuFindZone, &frmServerStatus::mnuFindZone_Click};
    gui::MenuItem mnuOpenZone{*this, IDM_frmServerStatus_mnuOpenZone, &frmServerStatus::mnuOpenZone_Click};
    /// Shown, but choosing it changes nothing: the amounts are those since the window was opened.
    gui::MenuItem mnuResetTraffic{*this, IDM_frmServerStatus_mnuResetTraffic};

    gui::Timer tmrUpdate{*this, std::chrono::milliseconds(1000), &frmServerStatus::tmrUpdate_Timer};
    gui::Timer tmrUpdateMessages{*this, std::chrono::milliseconds(5000),
                                 &frmServerStatus::tmrUpdateMessages_Timer};

private:
    void Form_Load() override;
    void Form_Resize() override { anchors_.Apply(); }
    void Form_MouseDown(gui::MouseButton button, int x, int y) override;
    void Form_MenuKey(POINT at) override { mnuFormMenu.Show(at); }
    void Form_ContextMenu(HWND control, POINT at) override;
    /// Ctrl+F finds in the message box that has the focus, else in the zone server's; F3 finds on.
    bool Form_Key(HWND control, int virtualKey) override;

    void txtLoginStatus_Click() { mnuLoginMessage.Show(); }
    void txtLoginStatus_ContextMenu(POINT at) { mnuLoginMessage.Show(at); }
    void txtCharacterStatus_Click() { mnuCharacterMessage.Show(); }
    void txtCharacterStatus_ContextMenu(POINT at) { mnuCharacterMessage.Show(at); }
    void txtZoneStatus_Click() { mnuZoneMessage.Show(); }
    void txtZoneStatus_ContextMenu(POINT at) { mnuZoneMessage.Show(at); }
    void fraTraffic_MouseDown(gui::MouseButton button, int x, int y);

    void mnuAlwaysOnTop_Click();
    void mnuClearLogin_Click() { txtLoginStatus.Text(""); }
    void mnuClearCharacter_Click() { txtCharacterStatus.Text(""); }
    void mnuClearZone_Click() { txtZoneStatus.Text(""); }
    void mnuLogLogin_Click() { SwitchLog(modServerControl::Server::Login); }
    void mnuLogCharacter_Click() { SwitchLog(modServerControl::Server::Character); }
    void mnuLogZone_Click() { SwitchLog(modServerControl::Server::Zone); }
    void mnuFindLogin_Click() { FindIn(modServerControl::Server::Login); }
    void mnuFindCharacter_Click() { FindIn(modServerControl::Server::Character); }
    void mnuFindZone_Click() { FindIn(modServerControl::Server::Zone); }
    void mnuOpenCharacter_Click() { OpenLog(modServerControl::Server::Character); }
    void mnuOpenZone_Click() { OpenLog(modServerControl::Server::Zone); }

    void tmrUpdate_Timer();
    void tmrUpdateMessages_Timer();

    /// What belongs to the messages of one server.
    struct Channel {
        modServerControl::Server server;
        gui::RichTextBox& box;
        gui::Label& more;
        gui::MenuItem& mnuLog;
        std::string_view key;
        const char* name;
        const char* logFile;
        /// Whether the check mark is heeded.
        bool logged;
        clsLog log{};
        /// What the hint tells of the window that is read.
        std::string origin{};
    };

    Channel& ChannelOf(modServerControl::Server server) {
        return channels_[static_cast<std::size_t>(server)];
    }
    void AnchorControls();
    void SwitchLog(modServerControl::Server server);
    void FindIn(modServerControl::Server server);
    void OpenLog(modServerControl::Server server);
    void TellOrigin(Channel& channel);
    void UpdateMarks();
    void UpdateZone();
    void UpdateTraffic();
    config::Traffic MachineTotals();

    clsINI kTools_;
    /// In the order of the servers. The login server's messages go to no log, whatever its check mark says:
    /// operators know that window as it is, and the mark is kept for them.
    std::array<Channel, 3> channels_{
        {{modServerControl::Server::Login, txtLoginStatus, lblLoginMore, mnuLogLogin,
          settings::key::kLogLogin, "Login", "LoginServer.log", false},
         {modServerControl::Server::Character, txtCharacterStatus, lblCharacterMore, mnuLogCharacter,
          settings::key::kLogCharacter, "Character", "CharacterServer.log", true},
         {modServerControl::Server::Zone, txtZoneStatus, lblZoneMore, mnuLogZone, settings::key::kLogZone,
          "Zone", "ZoneServer.log", true}}};
    CIpHelper ipHelper_;
    TotalsReader totals_ = [this] { return MachineTotals(); };
    config::TrafficMeter traffic_;
    gui::Anchors anchors_{*this};
    frmFindMessage find_;
};
