// Takes the pictures for the guide: starts kTools, opens one window after the other as a user would, by its
// buttons and menu entries, and saves what is on the screen. A window with tabs gives a picture of each tab.
//
//   tour.exe KTOOLS.EXE FOLDER
//
// FOLDER\tour.log tells what was seen, and ends with "tour ended with 0" when every window came up.

#include "accounts/frmAccountConflict.ids.h"
#include "accounts/frmAccountEditor.ids.h"
#include "accounts/frmFindAccount.ids.h"
#include "app/frmMainMenu.ids.h"
#include "config/fraNewPlayer.ids.h"
#include "config/frmFindMessage.ids.h"
#include "config/frmServerStatus.ids.h"
#include "database/Connection.h"
#include "database/Error.h"
#include "database/Odbc.h"
#include "database/Query.h"
#include "dbsetup/fraAccounts.ids.h"
#include "dbsetup/fraDatabaseCheck.ids.h"
#include "dbsetup/fraRepair.ids.h"
#include "dbsetup/fraServerTest.ids.h"
#include "gui/frmWaiting.ids.h"
#include "StandinCommands.h"
#include "supervision/fraBackup.ids.h"
#include "supervision/fraConnections.ids.h"
#include "supervision/fraErrorDetector.ids.h"
#include "supervision/frmServerControl.ids.h"

// clang-format off
#include <winsock2.h>
#include <windows.h>
#include <objidl.h>
// clang-format on
#include <algorithm>
#include <commctrl.h>
// GDI+ headers call min and max unqualified.
namespace Gdiplus {
using std::max; // NOLINT(misc-unused-using-decls)
using std::min; // NOLINT(misc-unused-using-decls)
} // namespace Gdiplus
#include <gdiplus.h>

#include <cctype>
#include <cstdio>
#include <functional>
#include <set>
#include <string>
#include <vector>

namespace {

constexpr DWORD kAppearsWithin = 30000;

FILE* logFile = nullptr;
int failures = 0;
std::string folder;
DWORD toolProcess = 0;

/// One picture: how it is come by from the window before it, and what is opened from it in turn.
struct Stop {
    std::string name;
    std::function<void(HWND)> open;
    std::vector<Stop> next = {};
    /// What is done in the window before its pictures are taken.
    std::function<void(HWND)> prepare = [](HWND) {};
    /// The only page that a picture is taken of, counted from 0; all of them for -1.
    int page = -1;
    /// How it is left, when closing the window is not the way.
    std::function<void(HWND)> leave = {};
    /// Nothing opens: the picture is of the window before, as `open` leaves it.
    bool same = false;
};

struct ControlSearch {
    int id;
    HWND found;
};

BOOL CALLBACK LookForControl(HWND child, LPARAM parameter) {
    auto& wanted = *reinterpret_cast<ControlSearch*>(parameter);
    if (GetDlgCtrlID(child) == wanted.id)
        wanted.found = child;
    return !wanted.found;
}

/// The control with this id, on whichever page of the window it is; null when there is none.
HWND ControlOf(HWND window, int id) {
    ControlSearch search{id, nullptr};
    EnumChildWindows(window, LookForControl, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

/// Presses the button with this id or chooses the menu entry.
std::function<void(HWND)> Press(int id) {
    return [id](HWND window) {
        if (HWND button = ControlOf(window, id))
            PostMessageA(button, BM_CLICK, 0, 0);
        else
            PostMessageA(window, WM_COMMAND, static_cast<WPARAM>(id), 0);
    };
}

/// Clicks on the control with this id.
std::function<void(HWND)> ClickOn(int id) {
    return [id](HWND window) {
        HWND control = ControlOf(window, id);
        RECT bounds{};
        GetWindowRect(control, &bounds);
        SetCursorPos(bounds.left + 60, bounds.top + 30);
        // A message carries the place of the pointer, which the screen moves in its own time.
        Sleep(500);
        PostMessageA(control, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(60, 30));
        PostMessageA(control, WM_LBUTTONUP, 0, MAKELPARAM(60, 30));
    };
}

void PostKeys(HWND window, int key, int times) {
    for (int i = 0; i < times; ++i)
        PostMessageA(window, WM_KEYDOWN, static_cast<WPARAM>(key), 0);
}

/// Opens a menu of the menu bar, counted from 0.
std::function<void(HWND)> MenuBar(int index) {
    return [index](HWND window) {
        PostMessageA(window, WM_SYSCOMMAND, SC_KEYMENU, 0);
        PostKeys(window, VK_RIGHT, index);
        PostKeys(window, VK_DOWN, 1);
    };
}

/// Opens the tray icon's menu, as the task bar reports a right press on the icon, and in it the submenu that
/// `downs` presses of the down key lead to (0 for none).
std::function<void(HWND)> TrayMenu(int downs) {
    return [downs](HWND window) {
        RECT bounds{};
        GetWindowRect(window, &bounds);
        SetCursorPos(bounds.left - 30, bounds.top - 70);
        PostMessageA(window, WM_LBUTTONDOWN, 0, WM_RBUTTONDOWN);
        PostKeys(window, VK_DOWN, downs);
        PostKeys(window, VK_RIGHT, downs ? 1 : 0);
    };
}

void Log(const char* format, const std::string& text) {
    std::fprintf(logFile, format, text.c_str());
    std::fflush(logFile);
}

void Failed(const std::string& what) {
    ++failures;
    Log("FAILED: %s\n", what);
}

bool WaitUntil(const std::function<bool()>& condition) {
    for (const ULONGLONG start = GetTickCount64(); GetTickCount64() - start < kAppearsWithin; Sleep(20)) {
        if (condition())
            return true;
    }
    return false;
}

std::string TextOf(HWND window) {
    char text[256] = "";
    GetWindowTextA(window, text, sizeof text);
    return text;
}

void Expect(HWND window, const std::string& what, const std::function<bool()>& condition) {
    if (!WaitUntil(condition))
        Failed(TextOf(window) + ": " + what);
}

bool HasText(HWND window, int id) {
    return SendMessageA(ControlOf(window, id), WM_GETTEXTLENGTH, 0, 0) > 0;
}

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
    SendMessageA(ControlOf(window, IDC_frmFindMessage_txtSought), WM_SETTEXT, 0,
                 reinterpret_cast<LPARAM>("map"));
    Press(IDC_frmFindMessage_cmdNext)(window);
}

void FindGunnar(HWND window) {
    SendMessageA(ControlOf(window, IDC_frmFindAccount_txtAccountName), WM_SETTEXT, 0,
                 reinterpret_cast<LPARAM>("gun"));
    SendMessageA(ControlOf(window, IDC_frmFindAccount_txtAccountName), EM_SETSEL, 3, 3);
}

/// The caret stands on the first letter otherwise.
void ShowWholeName(HWND window) {
    const HWND name = ControlOf(window, IDC_frmAccountEditor_cboAccountName);
    SendMessageA(name, CB_SETEDITSEL, 0, MAKELPARAM(50, 50));
}

/// Logs in as the administrator of the playground's database server, and runs the test and the check.
void TestAndCheck(HWND window) {
    SendMessageA(ControlOf(window, IDC_fraDatabaseCheck_txtRootUsername), WM_SETTEXT, 0,
                 reinterpret_cast<LPARAM>("root"));
    for (const auto& [button, result] :
         {std::pair{IDC_fraServerTest_cmdTestMySQL, IDC_fraServerTest_lblRunningMySQL},
          std::pair{IDC_fraDatabaseCheck_cmdCheckDB, IDC_fraDatabaseCheck_lblAMGlobalTables}}) {
        const std::string before = TextOf(ControlOf(window, result));
        Press(button)(window);
        Expect(window, "no result came",
               [&, label = result] { return TextOf(ControlOf(window, label)) != before; });
    }
}

/// The file as hands have left it: rows without an account, one twice, and a file of the day before.
void OpenWithOddPrivileges(HWND window) {
    const std::string path = "C:\\Kerno\\database\\id_table";
    if (FILE* file = std::fopen((path + ".txt").c_str(), "ab")) {
        std::fputs("100008,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1\r\n100431,1,0,0,0,0,0,0,1,0,0,0,0,0,0,0\r\n"
                   "100001,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1\r\n",
                   file);
        std::fclose(file);
    }
    CopyFileA((path + ".txt").c_str(), (path + " 2026-05-02 21.14.05.120.bak").c_str(), FALSE);
    Press(IDC_frmMainMenu_cmdAccountEditor)(window);
}

/// Sends a statement to the playground's database server as its administrator, over a connection that stays.
void TellDatabase(const char* statement) {
    static database::SessionPtr session;
    try {
        if (!session)
            session = std::make_shared<database::odbc::Session>(
                database::MySQLConnectionString("localhost", "root", ""), 10);
        database::Execute(session, statement);
    } catch (const database::Error& error) {
        Failed(error.Description());
    }
}

/// Presses the button while somebody else has the accounts.
void ReloadLocked(HWND window) {
    TellDatabase("LOCK TABLES glogin.account WRITE");
    Press(IDC_frmAccountEditor_cmdReload)(window);
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

/// Changes two fields of the account that is shown.
void ChangeAccount(HWND window) {
    // The window before this one has hardly gone, and the account is shown anew after it.
    Sleep(500);
    for (const auto& [box, text] : {std::pair{IDC_frmAccountEditor_txtAccountPassword, "new secret"},
                                    std::pair{IDC_frmAccountEditor_txtEmail, "gm@example.org"}})
        SendMessageA(ControlOf(window, box), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text));
    Press(IDC_frmAccountEditor_cmdRemoveAllPrivileges)(window);
}

/// Saves what somebody else has changed meanwhile.
void ChangeElsewhereAndSave(HWND window) {
    TellDatabase("UPDATE glogin.account SET Pass = 'moonlight', Gender = 1 WHERE Name = 'marian'");
    Press(IDC_frmAccountEditor_cmdSave)(window);
}

bool IsOfClass(HWND window, const std::string& wanted) {
    char name[32] = "";
    GetClassNameA(window, name, sizeof name);
    return name == wanted;
}

BOOL CALLBACK AddToolWindow(HWND window, LPARAM parameter) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    RECT bounds;
    GetWindowRect(window, &bounds);
    if (process == toolProcess && IsWindowVisible(window) && !IsRectEmpty(&bounds) &&
        !IsOfClass(window, TOOLTIPS_CLASSA))
        reinterpret_cast<std::set<HWND>*>(parameter)->insert(window);
    return TRUE;
}

/// The visible windows of kTools, opened menus included. Tooltips come and go by themselves.
std::set<HWND> ToolWindows() {
    std::set<HWND> windows;
    EnumWindows(AddToolWindow, reinterpret_cast<LPARAM>(&windows));
    return windows;
}

/// Waits for the box whose text begins so, and presses its button.
void AnswerBox(const std::string& start, int button) {
    HWND box = nullptr;
    Expect(box, "no box came: " + start, [&] {
        for (HWND each : ToolWindows())
            if (TextOf(GetDlgItem(each, 0xFFFF)).starts_with(start))
                box = each;
        return box != nullptr;
    });
    PostMessageA(GetDlgItem(box, button), BM_CLICK, 0, 0);
    Expect(box, "the box did not close", [&] { return !IsWindow(box); });
}

void SaveConflict(HWND window) {
    Press(IDC_frmAccountConflict_cmdSave)(window);
    AnswerBox("Account saved successfully", IDOK);
}

void LetCopyEnd(HWND box) {
    PostMessageA(GetDlgItem(box, IDNO), BM_CLICK, 0, 0);
    TellDatabase("UNLOCK TABLES");
}

/// Cancels what is waited for, and closes the box that says so.
void CancelWait(HWND window) {
    Press(IDC_frmWaiting_cmdCancel)(window);
    AnswerBox("Kerno Tools failed to reload", IDOK);
    TellDatabase("UNLOCK TABLES");
}

/// Sets up the servers' logins with one user name and password that the wizard asks about, or with good ones.
std::function<void(HWND)> SetUpAccounts(const char* user, const char* password) {
    return [user, password](HWND window) {
        SendMessageA(ControlOf(window, IDC_fraDatabaseCheck_txtRootUsername), WM_SETTEXT, 0,
                     reinterpret_cast<LPARAM>("root"));
        for (const auto& [box, text] : {std::pair{IDC_fraAccounts_txtGloginUsername, user},
                                        std::pair{IDC_fraAccounts_txtGloginPassword, password}})
            SendMessageA(ControlOf(window, box), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text));
        Press(IDC_fraAccounts_cmdSetupAccounts)(window);
    };
}

void AgreeToAll(HWND box);

/// As on a server without the databases: they are deleted, and the check shows it.
void DeleteAndCheck(HWND window) {
    SendMessageA(ControlOf(window, IDC_fraDatabaseCheck_txtRootUsername), WM_SETTEXT, 0,
                 reinterpret_cast<LPARAM>("root"));
    Press(IDC_fraRepair_cmdDeleteDatabase)(window);
    AnswerBox("This action will destroy", IDYES);
    // The deletion goes on behind the box, and the wizard does one thing at a time.
    Sleep(5000);
    Press(IDC_fraDatabaseCheck_cmdCheckDB)(window);
    Expect(window, "the databases are still there",
           [window] { return TextOf(ControlOf(window, IDC_fraDatabaseCheck_lblAMGlobal)) == "Not Existed"; });
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

// The tour. Pages of a window need no entry.
const std::vector<Stop> kStops = {
    {"menu-settings", MenuBar(0)},
    {"menu-extras", MenuBar(1)},
    {"menu-tray", TrayMenu(0)},
    {"menu-tray-components", TrayMenu(4)},
    {"server-folder", Press(IDM_frmMainMenu_mnuSetPath)},
    {"mysql-folder", Press(IDM_frmMainMenu_mnuSetSQLPath)},
    {"about", Press(IDM_frmMainMenu_mnuAbout)},
    {"server-status",
     Press(IDC_frmMainMenu_cmdServerStatus),
     {{"server-status-menu", ClickOn(IDC_frmServerStatus_txtZoneStatus)},
      {"find-message", [](HWND window) { PostKeys(window, VK_F3, 1); }, {}, FindLine}},
     AwaitMessages},
    {"configurator",
     Press(IDC_frmMainMenu_cmdServerConfig),
     {{"starting-location", Press(IDC_fraNewPlayer_cmdMapPicker)}}},
    {"control-panel",
     Press(IDC_frmMainMenu_cmdServerControl),
     {{"ip-detection", Press(IDC_fraConnections_cmdIPDetectionSettings)},
      {"journal", Press(IDC_frmServerControl_cmdJournal)},
      {"backup-check", Press(IDC_fraBackup_cmdCheckBackup)},
      {.name = "backup-waiting", .open = BackUpOverLock, .page = 1, .same = true},
      {.name = "backup-closing",
       .open = [](HWND window) { PostMessageA(window, WM_CLOSE, 0, 0); },
       .leave = LetCopyEnd},
      {"control-panel-menu", TrayMenu(0)},
      {.name = "control-panel-trouble", .open = TroubleServers, .page = 2, .same = true}}},
    // Its first account is a game master's.
    {"account-editor",
     OpenWithOddPrivileges,
     {{"account-list", Press(IDC_frmAccountEditor_cmdList)},
      {"privilege-file", Press(IDC_frmAccountEditor_cmdPrivilegeFile)},
      {.name = "account-editor-waiting", .open = ChangeAccount, .same = true},
      {"account-changes", Press(IDC_frmAccountEditor_cmdChanges)},
      {.name = "account-conflict", .open = ChangeElsewhereAndSave, .leave = SaveConflict},
      {.name = "waiting", .open = ReloadLocked, .leave = CancelWait},
      {"find-account", Press(IDC_frmAccountEditor_cmdFind), {}, FindGunnar}},
     ShowWholeName},
    // A server of today refuses at first, and the wizard asks.
    {"mysql-setup",
     Press(IDM_frmMainMenu_mnuSetUpMySQL),
     {{"mysql-setup-doubts", SetUpAccounts("root", "")},
      {.name = "mysql-setup-accounts",
       .open = SetUpAccounts("kerno_login", "login-secret"),
       .leave = AgreeToAll}},
     TestAndCheck},
    // What a newcomer sees, at the end, as nothing is left then.
    {"mysql-setup-fresh",
     Press(IDM_frmMainMenu_mnuSetUpMySQL),
     {{"mysql-setup-engine", Press(IDC_fraRepair_cmdRepairDatabase)}},
     DeleteAndCheck,
     2},
};

struct Pixels {
    int width, height;
    std::vector<DWORD> colours;
    bool operator==(const Pixels&) const = default;
};

Pixels ScreenAt(const RECT& area) {
    Pixels pixels{area.right - area.left, area.bottom - area.top, {}};
    pixels.colours.resize(static_cast<size_t>(pixels.width) * static_cast<size_t>(pixels.height));
    BITMAPINFO info{};
    info.bmiHeader = {sizeof info.bmiHeader, pixels.width, -pixels.height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    HDC screen = GetDC(nullptr);
    HDC memory = CreateCompatibleDC(screen);
    void* bits = nullptr;
    HBITMAP bitmap = CreateDIBSection(memory, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    HGDIOBJ before = SelectObject(memory, bitmap);
    BitBlt(memory, 0, 0, pixels.width, pixels.height, screen, area.left, area.top, SRCCOPY);
    GdiFlush();
    std::copy_n(static_cast<DWORD*>(bits), pixels.colours.size(), pixels.colours.begin());
    SelectObject(memory, before);
    DeleteObject(bitmap);
    DeleteDC(memory);
    ReleaseDC(nullptr, screen);
    return pixels;
}

/// What is on the screen once it has stopped changing; what never stops is taken as it is at last.
Pixels SettledScreenAt(const RECT& area) {
    Pixels last = ScreenAt(area);
    for (int i = 0; i < 40; ++i) {
        Sleep(250);
        Pixels now = ScreenAt(area);
        if (now == last)
            break;
        last = std::move(now);
    }
    return last;
}

void Save(const std::string& name, RECT area) {
    const RECT whole{0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
    IntersectRect(&area, &area, &whole);
    Pixels pixels = SettledScreenAt(area);
    constexpr CLSID kPng{0x557cf406, 0x1a04, 0x11d3, {0x9a, 0x73, 0x00, 0x00, 0xf8, 0x1e, 0xf3, 0x2e}};
    Gdiplus::Bitmap bitmap(pixels.width, pixels.height, pixels.width * 4, PixelFormat32bppRGB,
                           reinterpret_cast<BYTE*>(pixels.colours.data()));
    const std::string path = folder + "\\" + name + ".png";
    if (bitmap.Save(std::wstring(path.begin(), path.end()).c_str(), &kPng, nullptr) != Gdiplus::Ok)
        Failed(path + " cannot be written");
    Log("%s\n", name);
}

RECT BoundsOf(const std::set<HWND>& windows) {
    RECT all{};
    for (HWND window : windows) {
        RECT bounds;
        GetWindowRect(window, &bounds);
        UnionRect(&all, &all, &bounds);
    }
    return all;
}

/// The caption of the page in front, as a part of a file name.
std::string PageInFront(HWND panel) {
    for (HWND child = GetWindow(GetParent(panel), GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
        if (!IsOfClass(child, "#32770") || !IsWindowVisible(child))
            continue;
        std::string caption = TextOf(child);
        std::erase(caption, '&');
        for (char& c : caption)
            c = std::isalnum(static_cast<unsigned char>(c)) ? static_cast<char>(std::tolower(c)) : '-';
        return caption;
    }
    return {};
}

void TakePictures(const std::string& name, HWND window, int page = -1) {
    // Out of the way, or it brings up a tooltip.
    SetCursorPos(GetSystemMetrics(SM_CXSCREEN) - 1, 1);
    HWND panel = FindWindowExA(window, nullptr, WC_TABCONTROLA, nullptr);
    if (!panel) {
        Save(name, BoundsOf({window}));
        return;
    }
    const int tabs = static_cast<int>(SendMessageA(panel, TCM_GETITEMCOUNT, 0, 0));
    for (int tab = 0; tab < tabs; ++tab) {
        if (page >= 0 && tab != page)
            continue;
        SendMessageA(panel, TCM_SETCURFOCUS, static_cast<WPARAM>(tab), 0);
        const std::string caption = PageInFront(panel);
        Save(name + "-" + (caption.empty() ? std::to_string(tab + 1) : caption), BoundsOf({window}));
    }
}

/// Says Yes or OK to this box and to each that follows it, with a picture of those, up to the one that tells
/// of success.
void AgreeToAll(HWND box) {
    const HWND owner = GetWindow(box, GW_OWNER);
    for (int number = 2;; ++number) {
        const bool last = TextOf(GetDlgItem(box, 0xFFFF)).starts_with("Kerno SQL accounts setup successful");
        const HWND yes = GetDlgItem(box, IDYES);
        const HWND answered = box;
        PostMessageA(yes ? yes : GetDlgItem(box, IDOK), BM_CLICK, 0, 0);
        if (last)
            return;
        box = nullptr;
        Expect(owner, "no box came after the one before", [&] {
            for (HWND each : ToolWindows())
                if (each != answered && GetWindow(each, GW_OWNER) == owner && IsOfClass(each, "#32770"))
                    box = each;
            return box != nullptr;
        });
        if (!box)
            return;
        TakePictures("mysql-setup-accounts-" + std::to_string(number), box);
    }
}

void Visit(const Stop& stop, HWND from) {
    const std::set<HWND> before = ToolWindows();
    std::set<HWND> opened;
    // As a user would have it; the window before may have left another program's in front.
    SetForegroundWindow(from);
    stop.open(from);
    if (stop.same) {
        TakePictures(stop.name, from, stop.page);
        return;
    }
    const auto appeared = [&] {
        opened.clear();
        for (HWND window : ToolWindows()) {
            if (!before.contains(window))
                opened.insert(window);
        }
        return !opened.empty();
    };
    if (!WaitUntil(appeared)) {
        Failed(stop.name + " did not come up");
        return;
    }
    HWND window = *opened.begin();
    if (IsOfClass(window, "#32768")) {
        // A submenu comes up a moment after its menu, and the window that the menu belongs to is shown too.
        SettledScreenAt(BoundsOf(before));
        appeared();
        opened.insert(from);
        Save(stop.name, BoundsOf(opened));
        PostMessageA(from, WM_CANCELMODE, 0, 0);
    } else {
        Log("%s: ", TextOf(window));
        stop.prepare(window);
        TakePictures(stop.name, window, stop.page);
        for (const Stop& next : stop.next)
            Visit(next, window);
        // A question has no other way out.
        if (stop.leave)
            stop.leave(window);
        else if (HWND no = GetDlgItem(window, IDNO))
            PostMessageA(no, BM_CLICK, 0, 0);
        else
            PostMessageA(window, WM_CLOSE, 0, 0);
    }
    if (!WaitUntil([&] { return !IsWindowVisible(window); }))
        Failed(stop.name + " did not close");
}

/// Starts the three servers as the tray menu does, so that the windows have something to show, and opens the
/// servers' own windows, which start minimised.
void StartServers(HWND mainMenu) {
    Press(IDM_frmMainMenu_mnuStartKerno)(mainMenu);
    std::vector<HWND> servers;
    const auto allThere = [&] {
        servers.clear();
        for (const char* windowClass : {"TForm1", "TfrmMain"}) {
            for (HWND window = nullptr; (window = FindWindowExA(nullptr, window, windowClass, nullptr));) {
                if (IsWindowVisible(window))
                    servers.push_back(window);
            }
        }
        return servers.size() == 3;
    };
    if (!WaitUntil(allThere))
        Failed("the servers did not start");
    // Around the main window, which stands in the middle.
    constexpr POINT kPlaces[] = {{20, 30}, {780, 30}, {20, 420}};
    for (size_t i = 0; i < servers.size() && i < std::size(kPlaces); ++i) {
        ShowWindow(servers[i], SW_SHOWNOACTIVATE);
        SetWindowPos(servers[i], nullptr, kPlaces[i].x, kPlaces[i].y, 0, 0,
                     SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    }
}

void Tour(std::string program) {
    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    if (!CreateProcessA(nullptr, program.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                        &process)) {
        Failed(program + " cannot be started");
        return;
    }
    toolProcess = process.dwProcessId;
    HWND mainMenu = nullptr;
    if (!WaitUntil([&] {
            const auto windows = ToolWindows();
            mainMenu = windows.empty() ? nullptr : *windows.begin();
            return mainMenu != nullptr;
        })) {
        Failed("no main window came up");
    } else {
        StartServers(mainMenu);
        SetForegroundWindow(mainMenu);
        Save("desktop", {0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)});
        TakePictures("main-menu", mainMenu);
        for (const Stop& stop : kStops)
            Visit(stop, mainMenu);
    }
    TerminateProcess(process.hProcess, 0);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
}

} // namespace

int main(int count, char** arguments) {
    if (count != 3)
        return 2;
    folder = arguments[2];
    logFile = std::fopen((folder + "\\tour.log").c_str(), "w");
    if (!logFile)
        return 2;
    ULONG_PTR token = 0;
    const Gdiplus::GdiplusStartupInput input;
    Gdiplus::GdiplusStartup(&token, &input, nullptr);
    Tour(arguments[1]);
    Gdiplus::GdiplusShutdown(token);
    std::fprintf(logFile, "tour ended with %d\n", failures);
    std::fclose(logFile);
    return failures;
}
