#include "Faults.h"

#include "accounts/frmAccountEditor.h"
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
#include <chrono>
#include <filesystem>
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

/// A user without a plan: sends each window of the tool, and whatever comes up over it, what a keyboard, a
/// mouse, controls and the system could send. Its plan runs on a thread of its own, which sees when the
/// tool's thread hangs; each step of it runs on the tool's thread, inside whichever loop waits there.
class Monkey {
public:
    Monkey(frmMainMenu& menu, int messages, std::function<void()> beforeEach)
        : menu_(menu), messages_(messages), beforeEach_(std::move(beforeEach)) {
        monkey_ = this;
        SetWindowLongPtrA(door_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(Enter));
        if (const char* seed = std::getenv("MONKEY_SEED"))
            random_.seed(static_cast<unsigned>(std::atoi(seed)));
        if (const char* log = std::getenv("MONKEY_LOG"))
            log_ = std::fopen(log, "wb");
    }
    ~Monkey() { DestroyWindow(door_); }

    /// What went wrong; "" for nothing.
    std::string Run() {
        std::atomic<bool> done = false;
        std::thread plan([&] {
            for (const Opening& each : kOpenings) {
                aim_ = &each;
                sent_ = 0;
                const ULONGLONG start = GetTickCount64();
                const bool reached = Repeat(&Monkey::Bother, [this] { return sent_ >= messages_; });
                if (log_)
                    std::fprintf(log_, "PHASE %s %d in %d ms, %d openings, %d steps\n", each.window.name(),
                                 sent_, (int)(GetTickCount64() - start), opened_, steps_);
                if (!reached)
                    wrong_ +=
                        std::string(each.window.name()) + " got " + std::to_string(sent_) + " messages\n";
                if (!Repeat(&Monkey::Close, [this] { return alone_; }))
                    wrong_ += std::string(each.window.name()) + " and what is over it cannot be closed\n";
                alone_ = false;
            }
            done = true;
        });
        support::WaitUntil([&] { return done || gui::Ending(); }, std::chrono::minutes(9));
        plan.join();
        return wrong_;
    }

private:
    using Step = void (Monkey::*)();
    using Windows = std::vector<HWND>;

    // ---- On the plan's thread

    bool Repeat(Step step, const std::function<bool()>& until) {
        const ULONGLONG end = GetTickCount64() + 120'000;
        while (!until()) {
            ++steps_;
            step_ = step;
            PostMessageA(door_, WM_APP, 0, 0);
            // Comes when the step has returned, or has a loop in it that goes on with what was posted.
            PostMessageA(door_, WM_APP + 1, 0, 0);
            if (WaitForSingleObject(stepped_.get(), 60'000) != WAIT_OBJECT_0) {
                std::printf("hangs after %s\n", last_);
                std::_Exit(1);
            }
            if (GetTickCount64() > end)
                return false;
        }
        return true;
    }

    // ---- On the tool's thread

    static LRESULT CALLBACK Enter(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        if (message == WM_APP)
            (monkey_->*monkey_->step_)();
        else if (message == WM_APP + 1)
            SetEvent(monkey_->stepped_.get());
        return DefWindowProcA(window, message, wParam, lParam);
    }

    int Below(int end) { return static_cast<int>(random_() % static_cast<unsigned>(end)); }
    template <class T, std::size_t N> T Any(const T (&values)[N]) { return values[Below(N)]; }
    HWND Any(const Windows& windows) { return windows[random_() % windows.size()]; }

    void Send(HWND window, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
        Note(window, message, wParam, lParam);
        SendMessageA(window, message, wParam, lParam);
    }
    void Post(HWND window, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
        Note(window, message, wParam, lParam);
        PostMessageA(window, message, wParam, lParam);
    }
    void Note(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        char name[32] = "";
        GetClassNameA(window, name, sizeof name);
        std::snprintf(last_, sizeof last_, "message %#x, %#llx, %#llx to %s %d (%s)", message,
                      static_cast<unsigned long long>(wParam), static_cast<unsigned long long>(lParam), name,
                      GetDlgCtrlID(window), aim_->window.name());
        if (log_) {
            std::fprintf(log_, "%s\n", last_);
            std::fflush(log_);
        }
    }

    static BOOL CALLBACK Collect(HWND window, LPARAM windows) {
        reinterpret_cast<Windows*>(windows)->push_back(window);
        return TRUE;
    }
    static Windows Children(HWND window) {
        Windows children;
        EnumChildWindows(window, Collect, reinterpret_cast<LPARAM>(&children));
        return children;
    }
    /// The tool's windows and message boxes.
    static Windows All() {
        Windows windows;
        EnumThreadWindows(GetCurrentThreadId(), Collect, reinterpret_cast<LPARAM>(&windows));
        std::erase_if(windows, [](HWND window) { return GetClassLongPtrA(window, GCW_ATOM) != 0x8002; });
        return windows;
    }
    /// All forms have the same dialog procedure, which message boxes have not.
    gui::Form* FormOf(HWND window) const {
        if (GetWindowLongPtrA(window, DWLP_DLGPROC) != GetWindowLongPtrA(menu_.Window(), DWLP_DLGPROC))
            return nullptr;
        return reinterpret_cast<gui::Form*>(GetWindowLongPtrA(window, DWLP_USER));
    }
    HWND Find(std::type_index type) const {
        for (HWND window : All())
            if (gui::Form* form = FormOf(window); form && typeid(*form) == type)
                return window;
        return nullptr;
    }

    void Bother() {
        beforeEach_();
        LeaveLoop(3);
        const HWND aim = Find(aim_->window);
        Windows open = All();
        std::erase_if(open, [](HWND window) { return !IsWindowEnabled(window); });
        if (!aim) {
            Open(*aim_);
        } else if (IsWindowEnabled(aim) && Below(4)) {
            ++sent_;
            Bother(aim);
        } else if (!open.empty()) {
            const HWND other = Any(open);
            if (FormOf(other) && (other == menu_.Window() || Below(3)))
                Bother(other);
            else
                Close(other, true);
        }
    }

    /// One step towards it.
    void Open(const Opening& opening) {
        const HWND from = Find(opening.from);
        if (!from)
            return Open(*std::ranges::find(kOpenings, opening.from, &Opening::window));
        if (!IsWindowEnabled(from))
            return Close();
        ++opened_;
        for (HWND child : Children(from))
            if (GetDlgCtrlID(child) == opening.opener)
                return Post(GetParent(child), WM_COMMAND, static_cast<WPARAM>(opening.opener),
                            reinterpret_cast<LPARAM>(child));
        Post(from, WM_COMMAND, static_cast<WPARAM>(opening.opener));
    }

    void Close() {
        LeaveLoop(1);
        const Windows all = All();
        for (HWND window : all)
            if (window != menu_.Window() && IsWindowEnabled(window))
                return Close(window, false);
        alone_ = all == Windows{menu_.Window()} && IsWindowEnabled(menu_.Window());
    }
    void Close(HWND window, bool anyAnswer) {
        if (FormOf(window))
            return Post(window, WM_CLOSE);
        Windows buttons = Children(window);
        std::erase_if(buttons, [](HWND child) {
            return !(SendMessageA(child, WM_GETDLGCODE, 0, 0) & DLGC_BUTTON) ||
                   !(GetWindowLongPtrA(child, GWL_STYLE) & WS_VISIBLE);
        });
        // The last one is No or Cancel, where there is one.
        if (!buttons.empty())
            Post(window, WM_COMMAND,
                 static_cast<WPARAM>(GetDlgCtrlID(anyAnswer ? Any(buttons) : buttons.back())));
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
        Windows children = Children(form);
        children.push_back(form);
        const HWND child = Any(children);
        const HWND parent = child == form ? form : GetParent(child);
        const auto id = static_cast<WORD>(GetDlgCtrlID(child));
        const auto self = reinterpret_cast<LPARAM>(child);
        const LPARAM point = MAKELPARAM(Below(700) - 50, Below(500) - 50);
        switch (Below(12)) {
        case 0: // a press
            if (child != form && IsWindowEnabled(child))
                Send(parent, WM_COMMAND, MAKEWPARAM(id, BN_CLICKED), self);
            break;
        case 1: // any notice from a control
            if (child != form)
                Send(parent, WM_COMMAND, MAKEWPARAM(id, Below(3) ? Any(kCodes) : Below(0x10000)), self);
            break;
        case 2: // any entry of the form's menus, but not the one that leaves the tool
            if (const int entry = id / 100 * 100 + Below(100);
                child != form && entry != IDM_frmMainMenu_mnuExit)
                Send(form, WM_COMMAND, static_cast<WPARAM>(entry));
            break;
        case 3: { // a notice that says no more than its sender
            NMTREEVIEWA notice{};
            notice.hdr = {child, id, Any(kNotices)};
            if (FormOf(parent) && child != form)
                Send(parent, WM_NOTIFY, id, reinterpret_cast<LPARAM>(&notice));
            break;
        }
        case 4: { // another entry or page; controls know each other's messages not
            for (const UINT select : {CB_SETCURSEL, LB_SETCURSEL, TCM_SETCURSEL})
                Send(child, select, static_cast<WPARAM>(Below(8) - 1));
            break;
        }
        case 5:
        case 6:
            SetWindowTextA(child, Any(kTexts));
            break;
        case 7:
            if (!IsWindowVisible(child) || !IsWindowEnabled(child))
                break;
            SetFocus(child);
            Post(child, WM_KEYDOWN, static_cast<WPARAM>(Below(256)), 1);
            Post(child, WM_CHAR, static_cast<WPARAM>(Below(256)), 1);
            break;
        case 8: {
            const UINT down = Any(kButtons);
            Post(child, WM_MOUSEMOVE, 0, point);
            Post(child, down, 0, point);
            Post(child, down + 1, 0, point);
            break;
        }
        case 9: // what the tray's icon sends, and other presses on the surface
            Send(form, WM_LBUTTONDOWN, 0, Below(2) ? Any(kTray) : point);
            break;
        case 10:
            if (Below(3) == 0)
                ShowWindow(form, Any(kShow));
            else
                SetWindowPos(form, nullptr, Below(3000) - 1000, Below(3000) - 1000, Below(3000), Below(3000),
                             0);
            break;
        default: {
            const auto& [message, values] = kFromSystem[Below(std::size(kFromSystem))];
            Send(Below(2) ? form : child, message, static_cast<WPARAM>(Below(values)));
        }
        }
    }

    static constexpr int kCodes[] = {1, 2, 3,  4,         5,         6,           7,
                                     8, 9, 10, EN_CHANGE, EN_UPDATE, EN_SETFOCUS, EN_KILLFOCUS};
    static constexpr UINT kNotices[] = {
        static_cast<UINT>(TCN_SELCHANGE),   static_cast<UINT>(TCN_SELCHANGING),
        static_cast<UINT>(TVN_SELCHANGEDA), static_cast<UINT>(TVN_ITEMEXPANDINGA),
        static_cast<UINT>(NM_CLICK),        static_cast<UINT>(NM_RETURN)};
    static constexpr UINT kButtons[] = {WM_LBUTTONDOWN, WM_RBUTTONDOWN, WM_MBUTTONDOWN};
    static constexpr LPARAM kTray[] = {modSystemTray::kTrayDoubleClick, modSystemTray::kTrayRightDown,
                                       WM_MOUSEMOVE};
    static constexpr int kShow[] = {SW_HIDE, SW_SHOW, SW_MINIMIZE, SW_RESTORE, SW_MAXIMIZE};
    static constexpr const char* kTexts[] = {"",         "0",          "-1",    "32768",     "99999999999",
                                             "1e308",    "-1e999",     "abc",   "127.0.0.2", "2147483648",
                                             "\xFF\xFE", "a,b=c\r\nd", "0.0001"};
    /// And how many values of their first parameter there are; where that is a handle, it is null.
    static constexpr std::pair<UINT, int> kFromSystem[] = {
        {WM_PAINT, 1},        {WM_TIMER, 4},          {WM_ACTIVATE, 3},    {WM_ENABLE, 2},
        {WM_SETFOCUS, 1},     {WM_KILLFOCUS, 1},      {WM_HSCROLL, 9},     {WM_VSCROLL, 9},
        {WM_SIZE, 5},         {WM_CANCELMODE, 1},     {WM_SHOWWINDOW, 2},  {WM_SYSCOLORCHANGE, 1},
        {WM_THEMECHANGED, 1}, {WM_CAPTURECHANGED, 1}, {WM_CONTEXTMENU, 1}, {WM_MOUSELEAVE, 1}};

    static inline Monkey* monkey_ = nullptr;
    frmMainMenu& menu_;
    const int messages_;
    std::function<void()> beforeEach_;
    std::mt19937 random_;
    HWND door_ = CreateWindowA("Static", "", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
    common::Handle<HANDLE, CloseHandle> stepped_{CreateEventA(nullptr, FALSE, FALSE, nullptr)};
    // The plan and the tool's thread take turns.
    Step step_ = nullptr;
    const Opening* aim_ = nullptr;
    int sent_ = 0;
    int opened_ = 0, steps_ = 0;
    FILE* log_ = nullptr;
    bool alone_ = false;
    char last_[200] = "";
    std::string wrong_;
};

TEST_F(Faults, RandomMessagesToEveryWindowHarmNothing) {
    for (const auto server : modServerControl::kServers)
        std::filesystem::remove(modServerControl::ExecutablePath(server));
    
    frmMainMenu menu(false);
    menu.Load();
    menu.Show();
    menu.mnuExit.Enabled(false);
    const int each = Times(300, 1000);
    EXPECT_EQ(Monkey(menu, each,
                     [this] {
                         modServerControl::KernoPath(servers.Path());
                         modServerControl::MySQLPath(program.Path() + "\\");
                     })
                  .Run(),
              "");
    EXPECT_FALSE(gui::Ending());
    EXPECT_TRUE(menu.Loaded());
}

} // namespace
