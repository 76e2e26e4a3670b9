#include "Faults.h"

#include "accounts/frmFindAccount.h"
#include "app/frmMainMenu.h"
#include "gui/modSystemTray.h"
#include "support/ChildProcess.h"

#include <commctrl.h>

#include <filesystem>
#include <random>
#include <set>

namespace {

/// A user without a plan: sends all of this thread's windows that can be reached what a keyboard, a mouse,
/// other controls and the system could send them. Works from a timer too, so that boxes, menus and modal
/// windows get their share while their own loops run.
class Monkey {
public:
    /// After at least `messages`, when all windows have had theirs, it closes whatever has come up over
    /// `main`.
    Monkey(HWND main, long messages, std::function<void()> beforeEach)
        : main_(main), messages_(messages), beforeEach_(std::move(beforeEach)) {
        monkey_ = this;
        timer_ = SetTimer(nullptr, 0, USER_TIMER_MINIMUM, [](HWND, UINT, UINT_PTR, DWORD) {
            for (int i = 0; i < 5; ++i)
                monkey_->Act();
        });
    }
    ~Monkey() { KillTimer(nullptr, timer_); }

    bool Done() const { return done_; }

private:
    int Below(int end) { return static_cast<int>(random_() % static_cast<unsigned>(end)); }
    template <class T, std::size_t N> T Any(const T (&values)[N]) { return values[Below(N)]; }

    bool Enough() const { return sent_ >= messages_ && missing_.empty(); }

    void Act() {
        GUITHREADINFO info{};
        info.cbSize = sizeof info;
        if (GetGUIThreadInfo(GetCurrentThreadId(), &info) && (info.flags & GUI_INMENUMODE) && Below(5) == 0)
            EndMenu();
        std::vector<HWND> roots;
        EnumThreadWindows(
            GetCurrentThreadId(),
            [](HWND window, LPARAM found) -> BOOL {
                char name[8] = "";
                GetClassNameA(window, name, sizeof name);
                if (std::string(name) == "#32770" && IsWindowEnabled(window))
                    reinterpret_cast<std::vector<HWND>*>(found)->push_back(window);
                return TRUE;
            },
            reinterpret_cast<LPARAM>(&roots));
        if (roots.empty())
            return;
        beforeEach_();
        const HWND root = roots[random_() % roots.size()];
        char caption[40] = "";
        GetWindowTextA(root, caption, sizeof caption);
        missing_.erase(caption);
        ++sent_;
        if (GetDlgItem(root, 0xFFFF) && GetDlgItem(root, IDNO))
            PostMessageA(root, WM_COMMAND, IDNO, 0);
        else if (GetDlgItem(root, 0xFFFF))
            PostMessageA(root, WM_COMMAND, Below(2) ? IDCANCEL : IDOK, 0);
        else if (!Enough())
            Bother(root);
        else if (root != main_)
            PostMessageA(root, WM_CLOSE, 0, 0);
        done_ = Enough() && roots == std::vector{main_};
    }

    void Bother(HWND root) {
        std::vector<HWND> children;
        EnumChildWindows(
            root,
            [](HWND window, LPARAM found) -> BOOL {
                reinterpret_cast<std::vector<HWND>*>(found)->push_back(window);
                return TRUE;
            },
            reinterpret_cast<LPARAM>(&children));
        const HWND child = children.empty() ? root : children[random_() % children.size()];
        const HWND parent = child == root ? root : GetParent(child);
        const auto id = static_cast<WORD>(GetDlgCtrlID(child));
        const LPARAM point = MAKELPARAM(Below(700) - 50, Below(500) - 50);
        switch (Below(11)) {
        case 0: // a press
            SendMessageA(parent, WM_COMMAND, MAKEWPARAM(id, BN_CLICKED), reinterpret_cast<LPARAM>(child));
            break;
        case 1: // any notice from a control
            SendMessageA(parent, WM_COMMAND, MAKEWPARAM(id, Any(kCodes)), reinterpret_cast<LPARAM>(child));
            break;
        case 2: { // any entry of the form's block of ids, but not the one that leaves the tool
            const int entry = (id >= 1000 && id < 2600 ? id : 1000) / 100 * 100 + Below(100);
            if (entry != IDM_frmMainMenu_mnuExit)
                SendMessageA(root, WM_COMMAND, static_cast<WPARAM>(entry), 0);
            break;
        }
        case 3: { // what only some controls send
            struct {
                NMHDR header;
                char rest[256];
            } notice{};
            notice.header = {child, id, static_cast<UINT>(-Below(900))};
            if (notice.header.code != static_cast<UINT>(NM_CUSTOMDRAW))
                SendMessageA(parent, WM_NOTIFY, id, reinterpret_cast<LPARAM>(&notice));
            break;
        }
        case 4:
        case 5: {
            static const char* const texts[] = {"",         "0",          "-1",    "32768",    "99999999999",
                                                "1e308",    "-1e999",     "abc",   "10.0.0.1", "2147483648",
                                                "\xFF\xFE", "a,b=c\r\nd", "0.0001"};
            SetWindowTextA(child, Any(texts));
            break;
        }
        case 6:
            // The dialog manager looks for ever for the neighbours of a focus that cannot be seen.
            if (!IsWindowVisible(child) || !IsWindowEnabled(child))
                break;
            SetFocus(child);
            PostMessageA(child, WM_KEYDOWN, static_cast<WPARAM>(Below(256)), 1);
            PostMessageA(child, WM_CHAR, static_cast<WPARAM>(Below(256)), 1);
            break;
        case 7: {
            const UINT down = Any(kButtons);
            PostMessageA(Below(2) ? child : root, WM_MOUSEMOVE, 0, point);
            PostMessageA(child, down, 0, point);
            PostMessageA(child, down + 1, 0, point);
            break;
        }
        case 8: // what the tray's icon sends, and other clicks on the surface
            SendMessageA(root, WM_LBUTTONDOWN, 0, Below(2) ? Any(kTray) : point);
            break;
        case 9:
            if (Below(3) == 0)
                ShowWindow(root, Any(kShow));
            else
                SetWindowPos(root, nullptr, Below(3000) - 1000, Below(3000) - 1000, Below(3000), Below(3000),
                             0);
            break;
        default:
            SendMessageA(Below(2) ? root : child, Any(kFromSystem), static_cast<WPARAM>(Below(4)), 0);
        }
    }

    static constexpr int kCodes[] = {
        0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, EN_CHANGE, EN_UPDATE, EN_SETFOCUS, EN_KILLFOCUS, 0xFFFF};
    static constexpr UINT kButtons[] = {WM_LBUTTONDOWN, WM_RBUTTONDOWN, WM_MBUTTONDOWN};
    static constexpr LPARAM kTray[] = {modSystemTray::kTrayDoubleClick, modSystemTray::kTrayRightDown,
                                       WM_MOUSEMOVE};
    static constexpr int kShow[] = {SW_HIDE, SW_SHOW, SW_MINIMIZE, SW_RESTORE, SW_MAXIMIZE};
    static constexpr UINT kFromSystem[] = {
        WM_TIMER,          WM_PAINT,        WM_ACTIVATE,       WM_ENABLE,     WM_SETFOCUS,
        WM_KILLFOCUS,      WM_HSCROLL,      WM_VSCROLL,        WM_SIZE,       WM_CANCELMODE,
        WM_SYSCOLORCHANGE, WM_THEMECHANGED, WM_CAPTURECHANGED, WM_SHOWWINDOW, WM_USER,
        WM_USER + 1,       WM_APP,          WM_CONTEXTMENU,    WM_MOUSELEAVE, WM_NULL};

    static inline Monkey* monkey_ = nullptr;
    HWND main_;
    long messages_;
    std::mt19937 random_;
    std::function<void()> beforeEach_;
    UINT_PTR timer_ = 0;
    long sent_ = 0;
    bool done_ = false;
    std::set<std::string> missing_{"Kerno Tools ::",
                                   "About Kerno Tools",
                                   "Kerno Tools :: Server Folder",
                                   "Kerno Tools :: MySQL Folder",
                                   "Kerno Tools :: Server Status",
                                   "Kerno Tools :: Server Control",
                                   "Kerno Tools :: Server Control Settings",
                                   "Kerno Tools :: Server Configurator",
                                   "Kerno Tools :: Starting Location Picker",
                                   "Kerno Tools :: MySQL Setup",
                                   "Kerno Tools :: Accounts Editor"};
};

TEST_F(Faults, RandomMessagesToEveryWindowHarmNothing) {
    for (const auto server : modServerControl::kServers)
        std::filesystem::remove(modServerControl::ExecutablePath(server));
    frmMainMenu menu(false);
    menu.Load();
    menu.Show();
    Monkey monkey(menu.Window(), Times(6000, 25'000), [this] {
        modServerControl::KernoPath(servers.Path());
        modServerControl::MySQLPath(program.Path() + "\\");
    });
    EXPECT_TRUE(support::WaitUntil([&] { return monkey.Done() || !menu.Loaded(); }, std::chrono::minutes(5)));
    EXPECT_TRUE(menu.Loaded());
}

} // namespace
