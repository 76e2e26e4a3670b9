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

#include <filesystem>
#include <future>
#include <iostream>
#include <random>
#include <typeindex>

namespace {

using namespace std::chrono_literals;

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
    {typeid(frmStartingLocationPicker), typeid(frmServerSettings), IDC_fraNewPlayer_cmdMapPicker},
    {typeid(frmServerControl), typeid(frmMainMenu), IDC_frmMainMenu_cmdServerControl},
    {typeid(frmIPDetection), typeid(frmServerControl), IDC_fraConnections_cmdIPDetectionSettings},
    {typeid(frmAccountEditor), typeid(frmMainMenu), IDC_frmMainMenu_cmdAccountEditor},
    {typeid(frmFindAccount), typeid(frmAccountEditor), IDC_frmAccountEditor_cmdFind},
    {typeid(frmMySQLSetUp), typeid(frmMainMenu), IDM_frmMainMenu_mnuSetUpMySQL},
};

// What the messages are made of. Where a value is a handle it is null: no system sends a made-up one, and
// nobody sends a class's private messages, from WM_USER on, to windows of another.
constexpr std::pair<UINT, int> kValuesOf[] = {
    {WM_PAINT, 1},      {WM_TIMER, 4},       {WM_ACTIVATE, 3},       {WM_ENABLE, 2},      {WM_SETFOCUS, 1},
    {WM_KILLFOCUS, 1},  {WM_HSCROLL, 9},     {WM_VSCROLL, 9},        {WM_SIZE, 5},        {WM_SHOWWINDOW, 2},
    {WM_CANCELMODE, 1}, {WM_CONTEXTMENU, 1}, {WM_SYSCOLORCHANGE, 1}, {WM_THEMECHANGED, 1}};
constexpr UINT kNotices[] = {TCN_SELCHANGE, TCN_SELCHANGING, TVN_ITEMEXPANDINGA, NM_CLICK, NM_RETURN};
constexpr UINT kSelections[] = {CB_SETCURSEL, LB_SETCURSEL, TCM_SETCURSEL};
constexpr const char* kTexts[] = {"",    "0",         "-1",         "32768",    "1e308",      "-1e999",
                                  "abc", "127.0.0.2", "2147483648", "\xFF\xFE", "a,b=c\r\nd", "0.0001"};
constexpr LPARAM kTray[] = {modSystemTray::kTrayDoubleClick, modSystemTray::kTrayRightDown, WM_MOUSEMOVE};

/// A user without a plan: sends each window of the tool, and whatever comes up over it, what a keyboard, a
/// mouse, controls and the system could send. A thread of its own goes from window to window and sees when
/// the tool's thread hangs; each step is taken on the tool's thread, inside whichever loop waits there.
class RandomMessages : public Faults, support::Databases {
protected:
    RandomMessages() {
        for (const auto server : modServerControl::kServers)
            std::filesystem::remove(modServerControl::ExecutablePath(server));
        Set({{settings::key::kKernoPath, servers.Path()},
             {settings::key::kMySQLPath, program.Path() + "\\"}});
        kerno.INIProperty("gloginname", "keeper");
        root.Execute("CREATE DATABASE glogin");
        root.Execute("CREATE TABLE glogin.account (AID int PRIMARY KEY, Name varchar(24), Pass varchar(24), "
                     "Gender int, Mail varchar(24), GMMode int)");
        root.Execute(
            "INSERT INTO glogin.account VALUES (1, 'alpha', 'a', 0, 'a@x', 0), (2, 'bravo', 'b', 1, '', 1)");
        support::MakeLogin(root, "keeper@localhost", "", "ALL ON glogin.*");
        menu_.Load();
        menu_.Show();
        menu_.mnuExit.Enabled(false);
        main_ = menu_.Window();
        SetWindowSubclass(main_, Enter, 2, reinterpret_cast<DWORD_PTR>(this));
    }
    ~RandomMessages() override { support::Clean(root); }

    /// The windows that did not get `messages`, or could not be closed afterwards.
    std::string Visit(int messages) {
        std::string failed;
        for (const Opening& each : kOpenings) {
            aim_ = &each;
            if (!Repeat(&RandomMessages::BotherAny, messages))
                failed.append(each.window.name()).append(" is not reached; ");
            if (!Repeat(&RandomMessages::CloseAll, 1))
                failed.append(each.window.name()).append(" is not closed; ");
        }
        return failed;
    }

private:
    using Windows = std::vector<HWND>;

    /// False when the step has not done its work that often within the time.
    bool Repeat(void (RandomMessages::*step)(), int times) {
        step_ = step;
        const auto end = std::chrono::steady_clock::now() + 90s;
        for (done_ = 0; done_ < times && std::chrono::steady_clock::now() < end;) {
            // The second one comes when the step has returned, or waits in a loop that takes messages.
            PostMessageA(main_, WM_APP, 0, 0);
            PostMessageA(main_, WM_APP + 1, 0, 0);
            if (WaitForSingleObject(stepped_.get(), 60'000) == WAIT_OBJECT_0)
                continue;
            std::cout << aim_->window.name() << " hangs after message " << last_.message << " to control "
                      << GetDlgCtrlID(last_.hwnd) << '\n';
            std::_Exit(1);
        }
        return done_ >= times;
    }

    // What follows runs on the tool's thread.

    static LRESULT CALLBACK Enter(HWND main, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                  DWORD_PTR test) {
        auto& self = *reinterpret_cast<RandomMessages*>(test);
        if (message == WM_APP) {
            ++self.depth_;
            (self.*self.step_)();
            --self.depth_;
        } else if (message == WM_APP + 1)
            SetEvent(self.stepped_.get());
        return DefSubclassProc(main, message, wParam, lParam);
    }

    int Below(std::size_t end) { return static_cast<int>(random_() % end); }
    template <class List> auto Any(const List& values) { return values[random_() % std::size(values)]; }

    void Send(HWND window, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
        last_ = {window, message, wParam, lParam, 0, {}};
        SendMessageA(window, message, wParam, lParam);
    }

    static Windows WithChildren(HWND window) {
        Windows windows{window};
        for (std::size_t i = 0; i < windows.size(); ++i)
            for (HWND child = nullptr; (child = FindWindowExA(windows[i], child, nullptr, nullptr));)
                windows.push_back(child);
        return windows;
    }
    /// The forms and message boxes that there are.
    static Windows Dialogs() {
        Windows windows;
        for (HWND each = nullptr; (each = FindWindowExA(nullptr, each, WC_DIALOG, nullptr));)
            if (GetWindowThreadProcessId(each, nullptr) == GetCurrentThreadId())
                windows.push_back(each);
        return windows;
    }
    /// All forms, and nothing else, have the main window's dialog procedure.
    bool IsForm(HWND window) const {
        return GetWindowLongPtrA(window, DWLP_DLGPROC) == GetWindowLongPtrA(main_, DWLP_DLGPROC);
    }
    HWND Find(std::type_index type) const {
        for (HWND window : Dialogs())
            if (IsForm(window) &&
                typeid(*reinterpret_cast<gui::Form*>(GetWindowLongPtrA(window, DWLP_USER))) == type)
                return window;
        return nullptr;
    }

    /// A message to the window that it is about or one over it, or a step towards it.
    void BotherAny() {
        // Whatever folder was chosen, there is no server in it to be started.
        modServerControl::KernoPath(servers.Path());
        const HWND aim = Find(aim_->window);
        const HWND any = Any(Dialogs());
        if (!Below(3))
            LeaveLoop();
        // No user gets into more menus, boxes and drags at once, and the system's stack for them has an end.
        if (depth_ > 6)
            CloseOne();
        else if (!aim)
            Open(*aim_);
        else if (IsWindowEnabled(aim) && Below(4) && ++done_)
            Bother(aim);
        else if (!IsWindowEnabled(any))
            return;
        else if (IsForm(any) && (any == main_ || Below(3)))
            Bother(any);
        else
            Close(any);
    }

    void Open(const Opening& opening) {
        const HWND from = Find(opening.from);
        if (!from)
            Open(*std::ranges::find(kOpenings, opening.from, &Opening::window));
        else if (!IsWindowEnabled(from))
            CloseOne();
        else
            for (HWND parent : WithChildren(from))
                if (const HWND button = GetDlgItem(parent, opening.opener); button || parent == from)
                    PostMessageA(parent, WM_COMMAND, static_cast<WPARAM>(opening.opener),
                                 reinterpret_cast<LPARAM>(button));
    }

    void CloseAll() { done_ = CloseOne(); }
    /// True when the main window is alone and takes presses; closes one of the others otherwise.
    bool CloseOne() {
        LeaveLoop();
        const Windows all = Dialogs();
        const auto other = std::ranges::find_if(
            all, [this](HWND window) { return window != main_ && IsWindowEnabled(window); });
        if (other != all.end())
            Close(*other);
        return all == Windows{main_} && IsWindowEnabled(main_);
    }
    void Close(HWND window) {
        if (IsForm(window))
            return void(PostMessageA(window, WM_CLOSE, 0, 0));
        HWND button = nullptr;
        for (int presses = Below(3); presses >= 0; --presses)
            button = GetNextDlgTabItem(window, button, FALSE);
        PostMessageA(window, WM_COMMAND, static_cast<WPARAM>(GetDlgCtrlID(button)), 0);
    }

    /// Menus, and windows that are being dragged, have loops of their own.
    void LeaveLoop() {
        EndMenu();
        PostMessageA(main_, WM_LBUTTONUP, 0, 0);
    }

    void Bother(HWND form) {
        const HWND child = Any(WithChildren(form));
        const HWND parent = child == form ? form : GetParent(child);
        const int id = child == form ? 0 : GetDlgCtrlID(child);
        const LPARAM point = MAKELPARAM(Below(700) - 50, Below(500) - 50);
        const WPARAM entry = static_cast<WPARAM>(id / 100 * 100 + Below(100));
        NMTREEVIEWA notice{};
        notice.hdr = {child, static_cast<UINT_PTR>(id), Any(kNotices)};
        switch (Below(11)) {
        case 0: // a control tells of something; the codes of text boxes are multiples of 256
            return Send(parent, WM_COMMAND, MAKEWPARAM(id, Below(2) * Below(11) << Below(2) * 8),
                        reinterpret_cast<LPARAM>(child));
        case 1: // likewise, by one that has no more to say than who it is
            return Send(parent, WM_NOTIFY, notice.hdr.idFrom, reinterpret_cast<LPARAM>(&notice));
        case 2: // any menu entry of the form, but not the one that leaves the tool
            return entry == IDM_frmMainMenu_mnuExit ? void() : Send(form, WM_COMMAND, entry);
        case 3: // another entry or page; windows ignore what is for another class
            return Send(child, Any(kSelections), static_cast<WPARAM>(Below(8) - 1));
        case 4:
        case 5:
            return Send(child, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(Any(kTexts)));
        case 6:
            // No user can put the focus where it is not seen.
            if (IsWindowVisible(child) && IsWindowEnabled(child))
                SetFocus(child);
            PostMessageA(child, WM_KEYDOWN, static_cast<WPARAM>(Below(256)), 1);
            PostMessageA(child, WM_CHAR, static_cast<WPARAM>(Below(256)), 1);
            return;
        case 7: // down, up or double click of one of the three buttons
            return Send(child, Below(4) ? WM_LBUTTONDOWN + static_cast<UINT>(Below(9)) : WM_MOUSEMOVE, 0,
                        point);
        case 8: // on the surface, or on the tray's icon
            return Send(form, WM_LBUTTONDOWN, 0, Below(2) ? Any(kTray) : point);
        case 9:
            Below(3)
                ? MoveWindow(form, Below(3000) - 1000, Below(3000) - 1000, Below(3000), Below(3000), TRUE)
                : ShowWindow(form, Below(SW_MAX));
            return;
        default:
            const auto [message, values] = Any(kValuesOf);
            Send(Below(2) ? form : child, message, static_cast<WPARAM>(Below(values)));
        }
    }

    frmMainMenu menu_{false};
    HWND main_ = nullptr;
    const common::Handle<HANDLE, CloseHandle> stepped_{CreateEventA(nullptr, FALSE, FALSE, nullptr)};
    // The two threads take turns with these.
    void (RandomMessages::*step_)() = nullptr;
    const Opening* aim_ = nullptr;
    int done_ = 0;
    int depth_ = 0;
    MSG last_{};
    std::mt19937 random_;
};

TEST_F(RandomMessages, HarmNoWindow) {
    auto visits = std::async(std::launch::async, [this] { return Visit(Times(300, 1000)); });
    support::WaitUntil([&] { return visits.wait_for(0s) == std::future_status::ready; }, 1h);
    EXPECT_EQ(visits.get(), "");
}

} // namespace
