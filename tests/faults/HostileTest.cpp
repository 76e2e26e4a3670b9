#include "Faults.h"

#include "config/frmServerStatus.h"
#include "gui/modSystemTray.h"
#include "servers/ForeignWindows.h"
#include "servers/modServerControl.h"
#include "servers/WindowOrigin.h"
#include "supervision/frmServerControl.h"
#include "support/ChildProcess.h"

#include <commctrl.h>

namespace {

using modServerControl::Server;
using support::WaitUntil;

constexpr const char* kLiar = "Kerno Login Server (liar)";
constexpr const char* kChangeling[] = {"Kerno Character Server", "Another program"};
constexpr const char* kBystander = "A dialog of another program";
constexpr const char* kRefusing = "kCharacter";
// What the fixture's main window answers: how often its box was asked for its text, and how many messages
// came to its windows that no part of the tool has any business to send them.
constexpr UINT kTimesAsked = WM_APP;
constexpr UINT kIntrusions = WM_APP + 1;

// ---- The fixture: a program with windows of the servers' classes and titles that lie.

int timesAsked = 0;
int intrusions = 0;

bool IsIntrusion(UINT message, const std::string& windowClass, bool isBystander) {
    switch (message) {
    case WM_CLOSE:
        return windowClass != modServerControl::kDialogClass || isBystander;
    case WM_CHAR:
    case WM_COMMAND:
    case WM_KEYDOWN:
    case WM_LBUTTONDOWN:
    case WM_SYSCOMMAND:
        return true;
    default:
        return false;
    }
}

LRESULT CALLBACK Lie(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    char name[64] = "";
    GetClassNameA(window, name, sizeof name);
    intrusions += IsIntrusion(message, name, GetPropA(window, kBystander));
    const bool isBox = std::string_view(name) == modServerControl::kMessageBoxClass;
    const bool isLate = isBox && GetPropA(window, "late");
    switch (message) {
    case kTimesAsked:
        return timesAsked;
    case kIntrusions:
        return intrusions;
    case WM_GETTEXTLENGTH:
        if (isLate)
            Sleep(1500);
        return isBox ? LRESULT{1} << (sizeof(LRESULT) * 8 - 2) : 0;
    case WM_GETTEXT:
        timesAsked += isBox;
        return isBox ? LRESULT{1} << (sizeof(LRESULT) * 8 - 2) : 0;
    case WM_CLOSE:
        return 0;
    case WM_SETTEXT:
        if (isBox)
            return TRUE;
        break;
    default:
        break;
    }
    return DefWindowProcA(window, message, wParam, lParam);
}

HWND Make(const char* windowClass, const char* title, HWND parent = nullptr) {
    WNDCLASSA description{};
    description.lpfnWndProc = Lie;
    description.lpszClassName = windowClass;
    // In the program's own place of classes, "#32770" is another class than the system's; so is "Static".
    RegisterClassA(&description);
    return CreateWindowExA(0, windowClass, title,
                           (parent ? WS_CHILD : WS_OVERLAPPEDWINDOW) | (WS_VISIBLE & -!parent), 0, 0, 60, 40,
                           parent, nullptr, nullptr, nullptr);
}

HWND MakeDialog(const char* title) {
    const HWND dialog = Make(modServerControl::kDialogClass, title);
    Make(modServerControl::kDialogTextClass, "text of a dialog", dialog);
    return dialog;
}

/// Messages that the tool takes from the system and the task bar, in no order.
void MockTheSystem(HWND tool) {
    static int turn = 0;
    const UINT registered = RegisterWindowMessageA("TaskbarCreated");
    switch (++turn % 4) {
    case 0:
        PostMessageA(tool, WM_LBUTTONDOWN, 1, modSystemTray::kTrayDoubleClick);
        break;
    case 1:
        PostMessageA(tool, WM_LBUTTONDOWN, 77, -1);
        break;
    default:
        PostMessageA(tool, registered, static_cast<WPARAM>(turn), -turn);
    }
}

const support::ChildEntry hostile("hostile windows", [](const std::string&) {
    const HWND liar = Make("TForm1", kLiar);
    Make("TMemo", "", liar);
    const HWND changeling = Make("TForm1", kChangeling[0]);
    SetPropA(Make("TMemo", "", changeling), "late", changeling);
    const HWND refusing = MakeDialog(kRefusing);
    SetPropA(MakeDialog(kBystander), kBystander, liar);
    // A title as long as it can be kept.
    Make("TForm1", std::string(1 << 20, 'k').c_str());

    std::vector<HWND> storm;
    for (int turn = 0;; ++turn) {
        SetWindowTextA(changeling, kChangeling[turn % 2]);
        SetWindowLongPtrA(refusing, GWLP_HWNDPARENT, reinterpret_cast<LONG_PTR>(turn % 2 ? liar : nullptr));
        storm.push_back(MakeDialog("kZone"));
        if (storm.size() > 20) {
            std::ranges::for_each(storm, DestroyWindow);
            storm.clear();
        }
        for (HWND tool = nullptr; (tool = FindWindowExA(nullptr, tool, "#32770", nullptr));)
            if (GetWindowThreadProcessId(tool, nullptr) != GetCurrentThreadId())
                MockTheSystem(tool);
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 20, QS_ALLINPUT);
        for (MSG message; PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE);)
            DispatchMessageA(&message);
    }
});

// ---- What the tool makes of it.

class Hostile : public Faults {
protected:
    /// The fixture's answer, which may take as long as it dawdles.
    static int Ask(UINT question) {
        DWORD_PTR answer = 0;
        SendMessageTimeoutA(FindWindowA("TForm1", kLiar), question, 0, 0, SMTO_NORMAL, 10'000, &answer);
        return static_cast<int>(answer);
    }
    /// So many characters of a tooltip newer systems give back.
    static constexpr std::size_t kHintLength = 79;
    /// The beginning of the tooltip of a form's control.
    static std::string Hint(const gui::Form& form, const gui::Control& control) {
        char text[1024] = "";
        TTTOOLINFOA tool{};
        tool.cbSize = TTTOOLINFOA_V1_SIZE;
        tool.hwnd = form.Window();
        tool.uId = reinterpret_cast<UINT_PTR>(control.Window());
        tool.lpszText = text;
        const auto inForm = [&](HWND window) {
            if (GetWindow(window, GW_OWNER) == form.Window())
                SendMessageA(window, TTM_GETTEXTA, sizeof text, reinterpret_cast<LPARAM>(&tool));
            return *text != '\0';
        };
        modServerControl::FindWindowWhere(nullptr, TOOLTIPS_CLASSA, inForm);
        return std::string(text).substr(0, kHintLength);
    }
};

TEST_F(Hostile, WindowsThatLieEndNothingAndAreNotTouched) {
    Supervise();
    TurnOn({settings::key::kErrorCheckingInterval});
    ASSERT_TRUE(servers.Launch(Server::Zone));
    const support::ChildProcess fixture("hostile windows", program.Path());
    ASSERT_TRUE(WaitUntil([] { return FindWindowA("TForm1", kLiar) != nullptr; }));

    support::MessageBoxes boxes;
    frmServerStatus status;
    status.Load();
    status.Show();
    frmServerControl panel;
    panel.Load();
    panel.Show();
    for (int round = 1; round <= Times(1, 20) && !HasFailure(); ++round) {
        servers.Kill(Server::Zone);
        EXPECT_TRUE(WaitUntil([&] { return servers.Instances(Server::Zone) == 1; })) << "not restarted";
        EXPECT_TRUE(WaitUntil([&] { return Ask(kTimesAsked) >= round; })) << "the box is not read";
    }
    EXPECT_EQ(Ask(kIntrusions), 0);
    // Whose windows they are can be seen.
    const std::string outside = "NOT from the folder of the servers";
    const std::string login = Hint(status, status.txtLoginStatus);
    EXPECT_NE(login.find(outside), std::string::npos) << login;
    const std::string zone = modServerControl::WindowOrigin(Server::Zone);
    EXPECT_NE(zone.find(servers.Path() + "kZone.exe"), std::string::npos) << zone;
    EXPECT_EQ(zone.find(outside), std::string::npos) << zone;
    EXPECT_TRUE(WaitUntil([&] { return Hint(status, status.txtZoneStatus) == zone.substr(0, kHintLength); }))
        << Hint(status, status.txtZoneStatus);
    EXPECT_TRUE(fixture.Running());
    EXPECT_TRUE(boxes.Seen().empty());
}

} // namespace
