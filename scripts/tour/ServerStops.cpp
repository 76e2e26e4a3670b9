#include "app/frmMainMenu.ids.h"
#include "config/frmFindMessage.ids.h"
#include "config/frmServerStatus.ids.h"
#include "Database.h"
#include "StandinCommands.h"
#include "Stops.h"
#include "supervision/fraBackup.ids.h"
#include "supervision/fraConnections.ids.h"
#include "supervision/fraErrorDetector.ids.h"
#include "supervision/frmServerControl.ids.h"

// clang-format off
#include <winsock2.h>
#include <windows.h>
// clang-format on

namespace {

/// Some seconds of traffic that comes and goes. On a computer of its own nothing else goes over the network.
void MakeTraffic() {
    WSADATA data;
    WSAStartup(MAKEWORD(2, 2), &data);
    const SOCKET out = socket(AF_INET, SOCK_DGRAM, IPPROTO_UDP);
    sockaddr_in discard{};
    discard.sin_family = AF_INET;
    discard.sin_port = htons(9);
    discard.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const std::string packet(1200, '.');
    constexpr int kPacketsAtOnce[] = {2, 5, 3, 8, 6, 1, 4, 9, 3, 5};
    for (const int packets : kPacketsAtOnce) {
        for (int tenth = 0; tenth < 10; ++tenth) {
            for (int i = 0; i < packets; ++i)
                sendto(out, packet.data(), static_cast<int>(packet.size()), 0,
                       reinterpret_cast<const sockaddr*>(&discard), sizeof discard);
            Sleep(100);
        }
    }
    closesocket(out);
    WSACleanup();
}

/// Until all three servers have said something.
void AwaitMessages(HWND window) {
    MakeTraffic();
    Expect(window, "no messages came", [window] {
        return HasText(window, IDC_frmServerStatus_txtLoginStatus) &&
               HasText(window, IDC_frmServerStatus_txtCharacterStatus) &&
               HasText(window, IDC_frmServerStatus_txtZoneStatus);
    });
}

void FindLine(HWND window) {
    Type(window, IDC_frmFindMessage_txtSought, "map");
    Press(IDC_frmFindMessage_cmdNext)(window);
}

/// Has a copy wait for somebody who uses the one before it.
void BackUpOverLock(HWND window) {
    for (const char* statement :
         {"CREATE DATABASE IF NOT EXISTS bk_glogin", "CREATE TABLE IF NOT EXISTS bk_glogin.account (ID INT)",
          "LOCK TABLES bk_glogin.account WRITE"})
        TellDatabase(statement);
    Press(IDC_fraBackup_cmdBackupDatabase)(window);
    Expect(window, "nothing is waited for", [window] {
        return TextOf(ControlOf(window, IDC_fraBackup_lblBackupResult)).starts_with("Waiting for");
    });
}

void LetCopyEnd(HWND box) {
    PostMessageA(GetDlgItem(box, IDNO), BM_CLICK, 0, 0);
    TellDatabase("UNLOCK TABLES");
}

/// The main window of the server whose title begins so; null when there is none.
HWND ServerWindow(const char* windowClass, const std::string& title) {
    HWND window = nullptr;
    while ((window = FindWindowExA(nullptr, window, windowClass, nullptr)) &&
           !TextOf(window).starts_with(title))
        ;
    return window;
}

/// One server stops, one hangs, one raises a dialog that does not close: each as the control panel tells it.
void TroubleServers(HWND panel) {
    using standin::Command;
    const auto order = [](HWND server, Command command, LPARAM number) {
        PostMessageA(server, standin::CommandMessage(), static_cast<WPARAM>(command), number);
    };
    const HWND login = ServerWindow("TForm1", "Kerno Login");
    const HWND character = ServerWindow("TForm1", "Kerno Character");
    order(login, Command::Crash, 0);
    order(character, Command::Hang, 60);
    order(ServerWindow("TfrmMain", ""), Command::RaiseStubbornDialog, 1);
    HWND dialog = nullptr;
    Expect(panel, "no dialog came", [&] { return dialog = FindWindowA("#32770", standin::kErrorTitle); });
    // Beside the panel.
    SetWindowPos(dialog, nullptr, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    const auto tells = [panel](int label, const char* words) {
        return TextOf(ControlOf(panel, label)).find(words) != std::string::npos;
    };
    Expect(panel, "the trouble is not told", [&] {
        return tells(IDC_fraErrorDetector_lblLoginState, "gone") &&
               tells(IDC_fraErrorDetector_lblCharacterState, "hung") &&
               tells(IDC_fraErrorDetector_lblZoneState, "dialog");
    });
}

} // namespace

Stop ServerStatus() {
    return {"server-status",
            Press(IDC_frmMainMenu_cmdServerStatus),
            {{"server-status-menu", ClickOn(IDC_frmServerStatus_txtZoneStatus)},
             {"find-message", [](HWND window) { PostKeys(window, VK_F3, 1); }, {}, FindLine}},
            AwaitMessages};
}

Stop ControlPanel() {
    return {"control-panel",
            Press(IDC_frmMainMenu_cmdServerControl),
            {{"ip-detection", Press(IDC_fraConnections_cmdIPDetectionSettings)},
             {"journal", Press(IDC_frmServerControl_cmdJournal)},
             {"backup-check", Press(IDC_fraBackup_cmdCheckBackup)},
             {.name = "backup-waiting", .open = BackUpOverLock, .page = 1, .same = true},
             {.name = "backup-closing",
              .open = [](HWND window) { PostMessageA(window, WM_CLOSE, 0, 0); },
              .leave = LetCopyEnd},
             {"control-panel-menu", TrayMenu(0)},
             {.name = "control-panel-trouble", .open = TroubleServers, .page = 2, .same = true}}};
}
