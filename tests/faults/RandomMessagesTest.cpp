#include "Faults.h"

#include "app/frmAbout.h"
#include "app/frmBrowse.h"
#include "app/frmMainMenu.h"
#include "app/frmSQLPath.h"
#include "config/frmStartingLocationPicker.h"
#include "gui/modSystemTray.h"
#include "supervision/frmIPDetection.h"
#include "support/Database.h"

#include <commctrl.h>

#include <atomic>
#include <filesystem>
#include <iostream>
#include <random>
#include <thread>
#include <typeindex>

namespace {

/// A window, the one that it is opened from, and the button or menu entry there that opens it.
struct Opening {
    std::type_index window, from;
    int opener;
};
const Opening kOpenings[] = {
    {typeid(frmMainMenu), typeid(frmMainMenu), 0},
    {typeid(frmAbout), typeid(frmMainMenu), IDM_frmMainMenu_mnuAbout},
    {typeid(frmBrowse), typeid(frmMainMenu), IDM_frmMainMenu_mnuSetPath},
    {typeid(frmSQLPath), typeid(frmMainMenu), IDM_frmMainMenu_mnuSetSQLPath},
    {typeid(frmServerStatus), typeid(frmMainMenu), IDC_frmMainMenu_cmdServerStatus},
    {typeid(frmServerSettings), typeid(frmMainMenu), IDC_frmMainMenu_cmdServerConfig},
    {typeid(frmStartingLocationPicker), typeid(frmServerSettings), IDC_NewPlayerPage_cmdMapPicker},
    {typeid(frmServerControl), typeid(frmMainMenu), IDC_frmMainMenu_cmdServerControl},
    {typeid(frmIPDetection), typeid(frmServerControl), IDC_fraConnections_cmdIPDetectionSettings},
    {typeid(frmAccountEditor), typeid(frmMainMenu), IDC_frmMainMenu_cmdAccountEditor},
    {typeid(frmFindAccount), typeid(frmAccountEditor), IDC_frmAccountEditor_cmdFind},
    {typeid(frmMySQLSetUp), typeid(frmMainMenu), IDM_frmMainMenu_mnuSetUpMySQL},
};

// What the messages are made of.
constexpr WORD kCodes[] = {
    0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, EN_CHANGE, EN_UPDATE, EN_SETFOCUS, EN_KILLFOCUS, 0xFFFF};
constexpr UINT kNotices[] = {TCN_SELCHANGE,      TCN_SELCHANGING, TVN_SELCHANGEDA,
                             TVN_ITEMEXPANDINGA, NM_CLICK,        NM_RETURN};
constexpr UINT kSelections[] = {CB_SETCURSEL, LB_SETCURSEL, TCM_SETCURSEL};
constexpr const char* kTexts[] = {"",         "0",          "-1",    "32768",     "99999999999",
                                  "1e308",    "-1e999",     "abc",   "127.0.0.2", "2147483648",
                                  "\xFF\xFE", "a,b=c\r\nd", "0.0001"};
constexpr UINT kButtons[] = {WM_LBUTTONDOWN, WM_RBUTTONDOWN, WM_MBUTTONDOWN};
constexpr LPARAM kTray[] = {modSystemTray::kTrayDoubleClick, modSystemTray::kTrayRightDown, WM_MOUSEMOVE};
constexpr int kShow[] = {SW_HIDE, SW_SHOW, SW_MINIMIZE, SW_RESTORE, SW_MAXIMIZE};
// With the number of their values. Where the value is a handle it is null: no system sends a made-up one, and
// nobody sends a class's private messages (from WM_USER on) to windows of another.
constexpr std::pair<UINT, int> kFromSystem[] = {
    {WM_PAINT, 1},          {WM_TIMER, 4},        {WM_ACTIVATE, 3},      {WM_ENABLE, 2},
    {WM_SETFOCUS, 1},       {WM_KILLFOCUS, 1},    {WM_HSCROLL, 9},       {WM_VSCROLL, 9},
    {WM_SIZE, 5},           {WM_SHOWWINDOW, 2},   {WM_CANCELMODE, 1},    {WM_CONTEXTMENU, 1},
    {WM_SYSCOLORCHANGE, 1}, {WM_THEMECHANGED, 1}, {WM_CAPTURECHANGED, 1}};

/// A user without a plan: sends each window of the tool, and whatever comes up over it, what a keyboard, a
/// mouse, controls and the system could send. The order of the windows is kept by a thread of its own, which
/// sees when the tool's thread hangs; each message is sent on the tool's thread, inside whichever loop waits
/// there.
class Monkey {
public:
    Monkey(HWND main, int messages) : main_(main), messages_(messages) {
        monkey_ = this;
        SetWindowLongPtrA(door_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(Enter));
        if (const char* seed = std::getenv("MONKEY_SEED"))
            random_.seed(static_cast<unsigned>(std::atoi(seed)));
        if (const char* log = std::getenv("MONKEY_LOG"))
            log_ = std::fopen(log, "wb");
    }
    ~Monkey() { DestroyWindow(door_); }

    /// The windows that did not get their messages or could not be closed after them; "" for none.
    std::string Run() {
        std::string wrong;
        std::atomic<bool> done = false;
        std::thread visits([&] {
            for (const Opening& each : kOpenings) {
                aim_ = &each;
                const bool sent = Repeat(&Monkey::Bother, messages_);
                if (log_)
                    std::fprintf(log_, "PHASE %s %d, at %llu\n", each.window.name(), done_, GetTickCount64());
                if (!sent || !Repeat(&Monkey::Close, 1))
                    wrong += std::string(each.window.name()) + (sent ? " stays\n" : " is not reached\n");
            }
            done = true;
        });
        support::WaitUntil([&] { return done.load(); }, std::chrono::hours(1));
        visits.join();
        return wrong;
    }

private:
    using Windows = std::vector<HWND>;

    /// False when `step` has not done its work that often within the time.
    bool Repeat(void (Monkey::*step)(), int times) {
        step_ = step;
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(90);
        for (done_ = 0; done_ < times && std::chrono::steady_clock::now() < end;) {
            // The second one comes when the step has returned, or waits in a loop that takes messages.
            PostMessageA(door_, WM_APP, 0, 0);
            PostMessageA(door_, WM_APP + 1, 0, 0);
            if (WaitForSingleObject(stepped_.get(), 60'000) == WAIT_OBJECT_0)
                continue;
            std::cout << aim_->window.name() << " hangs after message " << last_.message << ' '
                      << last_.wParam << ' ' << last_.lParam << " to control " << GetDlgCtrlID(last_.hwnd)
                      << '\n';
            std::_Exit(1);
        }
        return done_ >= times;
    }

    // What follows runs on the tool's thread.

    static LRESULT CALLBACK Enter(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        if (message == WM_APP)
            (monkey_->*monkey_->step_)();
        else if (message == WM_APP + 1)
            SetEvent(monkey_->stepped_.get());
        return DefWindowProcA(window, message, wParam, lParam);
    }

    int Below(std::size_t end) { return static_cast<int>(random_() % end); }
    template <class List> auto Any(const List& values) { return values[random_() % std::size(values)]; }

    void Send(HWND window, UINT message, WPARAM wParam = 0, LPARAM lParam = 0, bool post = false) {
        last_ = {window, message, wParam, lParam, 0, {}};
        if (log_) {
            char name[32] = "";
            GetClassNameA(window, name, sizeof name);
            std::fprintf(log_, "message %#x, %#llx, %#llx to %s %d (%s)\n", message, wParam, lParam, name,
                         GetDlgCtrlID(window), aim_->window.name());
            std::fflush(log_);
        }
        (post ? PostMessageA(window, message, wParam, lParam)
              : SendMessageA(window, message, wParam, lParam));
    }
    void Post(HWND window, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
        Send(window, message, wParam, lParam, true);
    }

    static BOOL CALLBACK Collect(HWND window, LPARAM windows) {
        reinterpret_cast<Windows*>(windows)->push_back(window);
        return TRUE;
    }
    static Windows WithChildren(HWND window) {
        Windows windows{window};
        EnumChildWindows(window, Collect, reinterpret_cast<LPARAM>(&windows));
        return windows;
    }
    /// The forms and message boxes that there are.
    static Windows Dialogs() {
        Windows windows;
        EnumThreadWindows(GetCurrentThreadId(), Collect, reinterpret_cast<LPARAM>(&windows));
        const auto kind = reinterpret_cast<ULONG_PTR>(WC_DIALOG);
        std::erase_if(windows, [=](HWND window) { return GetClassLongPtrA(window, GCW_ATOM) != kind; });
        return windows;
    }
    /// All forms, and nothing else, have the main window's dialog procedure.
    gui::Form* FormOf(HWND window) const {
        const bool is = GetWindowLongPtrA(window, DWLP_DLGPROC) == GetWindowLongPtrA(main_, DWLP_DLGPROC);
        return is ? reinterpret_cast<gui::Form*>(GetWindowLongPtrA(window, DWLP_USER)) : nullptr;
    }
    HWND Find(std::type_index type) const {
        const auto isThat = [&](HWND window) {
            const gui::Form* form = FormOf(window);
            return form && typeid(*form) == type;
        };
        const Windows all = Dialogs();
        const auto found = std::ranges::find_if(all, isThat);
        return found == all.end() ? nullptr : *found;
    }

    /// A message to the window that it is about, or a step towards it.
    void Bother() {
        // Whatever folder was chosen, there is no server in it to be started.
        modServerControl::KernoPath(kernoPath_);
        LeaveLoop(3);
        const HWND aim = Find(aim_->window);
        Windows others = Dialogs();
        std::erase_if(others, [](HWND window) { return !IsWindowEnabled(window); });
        if (!aim)
            return Open(*aim_);
        if (IsWindowEnabled(aim) && Below(4)) {
            ++done_;
            return Bother(aim);
        }
        if (const HWND other = others.empty() ? nullptr : Any(others))
            FormOf(other) && (other == main_ || Below(3)) ? Bother(other) : Close(other);
    }

    void Open(const Opening& opening) {
        const HWND from = Find(opening.from);
        if (!from)
            return Open(*std::ranges::find(kOpenings, opening.from, &Opening::window));
        if (!IsWindowEnabled(from))
            return Close();
        for (HWND parent : WithChildren(from))
            if (const HWND button = GetDlgItem(parent, opening.opener); button || parent == from)
                Post(parent, WM_COMMAND, static_cast<WPARAM>(opening.opener),
                     reinterpret_cast<LPARAM>(button));
    }

    /// Closes what is open, one a time, until the main window is alone and takes presses again.
    void Close() {
        LeaveLoop(1);
        const Windows all = Dialogs();
        for (HWND window : all)
            if (window != main_ && IsWindowEnabled(window))
                return Close(window);
        done_ = all == Windows{main_} && IsWindowEnabled(main_);
    }
    void Close(HWND window) {
        if (FormOf(window))
            return Post(window, WM_CLOSE);
        Windows buttons = WithChildren(window);
        std::erase_if(buttons, [](HWND child) {
            return !(SendMessageA(child, WM_GETDLGCODE, 0, 0) & DLGC_BUTTON) ||
                   !(GetWindowLongPtrA(child, GWL_STYLE) & WS_VISIBLE);
        });
        if (!buttons.empty())
            Post(window, WM_COMMAND, static_cast<WPARAM>(GetDlgCtrlID(Any(buttons))));
    }

    /// Menus, and windows that are being dragged, have loops of their own.
    void LeaveLoop(int oneIn) {
        GUITHREADINFO info{};
        info.cbSize = sizeof info;
        if (!GetGUIThreadInfo(GetCurrentThreadId(), &info) || Below(oneIn))
            return;
        if (info.flags & GUI_INMENUMODE)
            EndMenu();
        if (info.flags & GUI_INMOVESIZE)
            PostMessageA(info.hwndMoveSize, WM_LBUTTONUP, 0, 0);
    }

    void Bother(HWND form) {
        const HWND child = Any(WithChildren(form));
        const HWND parent = child == form ? form : GetParent(child);
        const auto id = child == form ? WORD() : static_cast<WORD>(GetDlgCtrlID(child));
        const auto self = reinterpret_cast<LPARAM>(child);
        const LPARAM point = MAKELPARAM(Below(700) - 50, Below(500) - 50);
        switch (Below(11)) {
        case 0: // what a control tells its parent
            return Send(parent, WM_COMMAND, MAKEWPARAM(id, Below(2) ? BN_CLICKED : Any(kCodes)), self);
        case 1: { // likewise, by one that has no more to say than that
            NMTREEVIEWA notice{};
            notice.hdr = {child, id, static_cast<UINT>(Any(kNotices))};
            return FormOf(parent) ? Send(parent, WM_NOTIFY, id, reinterpret_cast<LPARAM>(&notice)) : void();
        }
        case 2: { // any menu entry of the form, but not the one that leaves the tool
            const int entry = id / 100 * 100 + Below(100);
            return entry == IDM_frmMainMenu_mnuExit ? void()
                                                    : Send(form, WM_COMMAND, static_cast<WPARAM>(entry));
        }
        case 3: // of lists and pages; windows ignore what is not for their class
            for (const UINT select : {CB_SETCURSEL, LB_SETCURSEL, TCM_SETCURSEL})
                Send(child, select, static_cast<WPARAM>(Below(8) - 1));
            return;
        case 4:
        case 5:
            return Send(child, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(Any(kTexts)));
        case 6:
            // The dialog manager looks for ever for the neighbours of a focus that cannot be seen.
            if (!IsWindowVisible(child) || !IsWindowEnabled(child))
                return;
            SetFocus(child);
            Post(child, WM_KEYDOWN, static_cast<WPARAM>(Below(256)), 1);
            return Post(child, WM_CHAR, static_cast<WPARAM>(Below(256)), 1);
        case 7:
            Post(child, WM_MOUSEMOVE, 0, point);
            for (const UINT down = Any(kButtons); const UINT message : {down, down + 1})
                Post(child, message, 0, point);
            return;
        case 8: // on the surface, or on the tray's icon
            return Send(form, WM_LBUTTONDOWN, 0, Below(2) ? Any(kTray) : point);
        case 9:
            if (Below(3) == 0)
                ShowWindow(form, Any(kShow));
            else
                SetWindowPos(form, nullptr, Below(3000) - 1000, Below(3000) - 1000, Below(3000), Below(3000),
                             0);
            return;
        default:
            const auto [message, values] = Any(kFromSystem);
            Send(Below(2) ? form : child, message, static_cast<WPARAM>(Below(values)));
        }
    }

    static inline Monkey* monkey_ = nullptr;
    const HWND main_;
    const int messages_;
    const std::string kernoPath_ = modServerControl::KernoPath();
    const HWND door_ = CreateWindowA("Static", "", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
    const common::Handle<HANDLE, CloseHandle> stepped_{CreateEventA(nullptr, FALSE, FALSE, nullptr)};
    // The two threads take turns with these.
    void (Monkey::*step_)() = nullptr;
    const Opening* aim_ = nullptr;
    int done_ = 0;
    MSG last_{};
    FILE* log_ = nullptr;
    std::mt19937 random_;
};

TEST_F(Faults, RandomMessagesToEveryWindowHarmNothing) {
    for (const auto server : modServerControl::kServers)
        std::filesystem::remove(modServerControl::ExecutablePath(server));
    database::Connection root;
    root.Open(support::RootConnection());
    support::Clean(root);
    for (const char* statement :
         {"CREATE DATABASE glogin", "GRANT ALL ON glogin.* TO keeper@localhost IDENTIFIED BY ''",
          "CREATE TABLE glogin.account (AID int(6) unsigned PRIMARY KEY auto_increment, Name varchar(24), "
          "Pass varchar(24), Gender int(1), Mail varchar(24), GMMode int(1))",
          "INSERT INTO glogin.account VALUES (100001, 'alpha', 'a', 0, 'a@x', 0), (100002, 'bravo', 'b', 1, "
          "'', 1)"})
        root.Execute(statement);
    kerno.INIProperty("gloginname", "keeper");
    std::filesystem::create_directories(program / "kTools\\databases");
    support::WriteFile(program / "kTools\\databases\\MapInfo.txt", "wide.map,101,51\r\nhigh.map,11,201");
    std::filesystem::create_directory(servers.Path() + "database");
    support::WriteFile(servers.Path() + "database\\id_table.txt",
                       "header\r\n100002,1,0,0,0,0,0,0,0,0,0,0,0,0,0,0\r\n");
    frmMainMenu menu(false);
    menu.Load();
    menu.Show();
    menu.mnuExit.Enabled(false);
    EXPECT_EQ(Monkey(menu.Window(), Times(300, 1000)).Run(), "");
    support::Clean(root);
}

} // namespace
