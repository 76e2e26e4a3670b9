// Takes the pictures for the guide: starts kTools, opens one window after the other as a user would, by its
// buttons and menu entries, and saves what is on the screen. A window with tabs gives a picture of each tab.
//
//   tour.exe KTOOLS.EXE FOLDER
//
// FOLDER\tour.log tells what was seen, and ends with "tour ended with 0" when every window came up.

#include "app/frmMainMenu.ids.h"
#include "config/fraNewPlayer.ids.h"
#include "Hands.h"
#include "Pictures.h"
#include "Report.h"
#include "Stops.h"

#include <windows.h>

#include <set>
#include <string>
#include <vector>

namespace {

/// Pages of a window need no entry.
const std::vector<Stop> kStops = {
    {"menu-settings", MenuBar(0)},
    {"menu-extras", MenuBar(1)},
    {"menu-tray", TrayMenu(0)},
    {"menu-tray-components", TrayMenu(4)},
    {"server-folder", Press(IDM_frmMainMenu_mnuSetPath)},
    {"mysql-folder", Press(IDM_frmMainMenu_mnuSetSQLPath)},
    {"about", Press(IDM_frmMainMenu_mnuAbout)},
    ServerStatus(),
    {"configurator",
     Press(IDC_frmMainMenu_cmdServerConfig),
     {{"starting-location", Press(IDC_fraNewPlayer_cmdMapPicker)}}},
    ControlPanel(),
    AccountEditor(),
    SetUpOfToday(),
    FreshSetUp(),
};

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
        AwaitSettled(BoundsOf(before));
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
    ToolProcess(process.dwProcessId);
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
    if (count != 3 || !BeginReport(arguments[2]))
        return 2;
    BeginPictures(arguments[2]);
    Tour(arguments[1]);
    EndPictures();
    return EndReport();
}
