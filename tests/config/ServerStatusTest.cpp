#include "config/frmServerStatus.h"

#include "support/Surroundings.h"

#include <richedit.h>

#include <regex>

namespace {

using standin::Command;
using support::Server;
using support::WaitUntil;

HMENU openedMenu;

LRESULT CALLBACK CloseMenu(int code, WPARAM wParam, LPARAM lParam) {
    const auto& call = *reinterpret_cast<const CWPSTRUCT*>(lParam);
    if (call.message == WM_INITMENUPOPUP)
        openedMenu = reinterpret_cast<HMENU>(call.wParam);
    if (call.message == WM_ENTERIDLE && call.wParam == MSGF_MENU)
        EndMenu();
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

/// The pop-up menu that `cause` opens on this thread, closed again; null when none opens.
HMENU MenuOf(const std::function<void()>& cause) {
    openedMenu = nullptr;
    const HHOOK hook = SetWindowsHookExA(WH_CALLWNDPROC, CloseMenu, nullptr, GetCurrentThreadId());
    cause();
    WaitUntil([] { return openedMenu != nullptr; });
    UnhookWindowsHookEx(hook);
    return openedMenu;
}

/// The window, whose ticks come from the tests only.
class ServerStatus : public testing::Test, protected support::Surroundings {
protected:
    void Load() {
        form_.Load();
        form_.tmrUpdate.Enabled(false);
        form_.tmrUpdateMessages.Enabled(false);
    }

    /// Lets the server write lines and waits until its box holds them.
    void Write(Server server, int lines) {
        servers.Command(server, Command::WriteLines, lines);
        const std::string last = "Line " + std::to_string(lines) + "\r\n";
        ASSERT_TRUE(WaitUntil([&] { return support::TextOf(Memo(server)).ends_with(last); }));
    }

    HWND Memo(Server server) const { return servers.Child(server, modServerControl::kMessageBoxClass); }

    /// The log without its times.
    std::string Logged(const char* name) const {
        return std::regex_replace(Log(name), std::regex(R"(\[[0-9/]+ [0-9:]+\])"), "[]");
    }

    config::Traffic totals_{1000, 1000};
    frmServerStatus form_{[this] { return totals_; }};
};

TEST_F(ServerStatus, HarvestsIntoTheBoxesAndTheLogsInOrder) {
    for (const Server server : modServerControl::kServers)
        ASSERT_TRUE(servers.Launch(server));
    support::WriteFile(kTools.INIPath(), "LogCharacter=7\r\nLogZone=0\r\nLogLogin=-1\r\n");
    Load();
    EXPECT_TRUE(form_.mnuLogCharacter.Checked() && form_.mnuLogLogin.Checked() &&
                !form_.mnuLogZone.Checked());
    Write(Server::Zone, 2);
    form_.tmrUpdateMessages.Tick();
    EXPECT_EQ(form_.txtZoneStatus.Text(), "\r\nLine 1\r\nLine 2\r\n");
    EXPECT_EQ(form_.txtLoginStatus.Text() + form_.txtCharacterStatus.Text(), "");
    EXPECT_EQ(support::TextOf(Memo(Server::Zone)), "");

    form_.mnuLogZone.Choose();
    EXPECT_EQ(kTools.INIProperty(settings::key::kLogZone), "-1");
    for (const int lines : {1, 2}) {
        for (const Server server : modServerControl::kServers)
            Write(server, lines);
        form_.tmrUpdateMessages.Tick();
    }
    EXPECT_EQ(form_.txtZoneStatus.Text(), "\r\nLine 1\r\nLine 2\r\n\r\nLine 1\r\n\r\nLine 1\r\nLine 2\r\n");
    EXPECT_EQ(form_.txtLoginStatus.Text(), "\r\nLine 1\r\n\r\nLine 1\r\nLine 2\r\n");
    const std::string logged = "[]\r\nLine 1\r\n\r\n[]\r\nLine 1\r\nLine 2\r\n\r\n";
    EXPECT_EQ(Logged("ZoneServer.log"), logged);
    EXPECT_EQ(Logged("CharacterServer.log"), logged);
    EXPECT_EQ(Log("LoginServer.log"), "");

    form_.mnuClearZone.Choose();
    EXPECT_EQ(form_.txtZoneStatus.Text(), "");
    EXPECT_EQ(Logged("ZoneServer.log"), logged);
    for (auto* item : {&form_.mnuLogZone, &form_.mnuLogLogin, &form_.mnuLogCharacter})
        item->Choose();
    EXPECT_EQ(kTools.INIProperty(settings::key::kLogZone) + kTools.INIProperty(settings::key::kLogLogin) +
                  kTools.INIProperty(settings::key::kLogCharacter),
              "000");
}

TEST_F(ServerStatus, AnUnwritableLogAndAHungServerDisturbNobody) {
    ASSERT_TRUE(servers.Launch(Server::Login));
    ASSERT_TRUE(servers.Launch(Server::Character));
    // A folder stands where the log would be, and the logs' folder is made although its parent is missing.
    Load();
    std::filesystem::create_directory(program / "kTools\\Logs\\CharacterServer.log");
    form_.mnuLogCharacter.Choose();
    Write(Server::Login, 1);
    Write(Server::Character, 3);
    servers.Command(Server::Login, Command::Hang, 20);
    DWORD_PTR answer = 0;
    ASSERT_TRUE(WaitUntil(
        [&] { return !SendMessageTimeoutA(Memo(Server::Login), WM_NULL, 0, 0, SMTO_NORMAL, 100, &answer); }));
    form_.tmrUpdateMessages.Tick();
    EXPECT_EQ(form_.txtCharacterStatus.Text(), "\r\nLine 1\r\nLine 2\r\nLine 3\r\n");
    EXPECT_EQ(form_.txtLoginStatus.Text(), "");
}

TEST_F(ServerStatus, FirstTicksShowZoneAndTraffic) {
    Load();
    EXPECT_EQ(form_.lblServerUptime.Caption() + form_.lblplayers.Caption(), "0:0:0:0players");
    form_.tmrUpdate.Tick();
    EXPECT_EQ(form_.lblServerUptime.Caption() + form_.lblplayers.Caption(), "Not running..Not running..");

    const HWND zone = servers.Launch(Server::Zone);
    ASSERT_TRUE(support::SetTextOf(zone, "Kerno Zone Server 00:01:02:03 Current Players (Count: 12)"));
    const std::string before = form_.lblDownload.Caption();
    totals_ = {1000 + 1024.0 * 1234, 1000 + 2048};
    form_.tmrUpdate.Tick();
    EXPECT_EQ(form_.lblServerUptime.Caption(), "00:01:02:03");
    EXPECT_EQ(form_.lblplayers.Caption(), "12");
    EXPECT_EQ(form_.lblReceived.Caption(), "1,234");
    EXPECT_EQ(form_.lblSent.Caption(), "2");
    EXPECT_EQ(form_.lblDownload.Caption(), before);
    totals_.received += 1024 * 5;
    form_.mnuResetTraffic.Choose();
    form_.tmrUpdate.Tick();
    EXPECT_EQ(form_.lblReceived.Caption(), "1,239");
    EXPECT_EQ(form_.lblDownload.Caption(), "5");
    EXPECT_EQ(form_.lblUpload.Caption(), "0");

    ASSERT_TRUE(support::SetTextOf(zone, "Kerno Zone Server 00:01:02:03, no players"));
    form_.tmrUpdate.Tick();
    EXPECT_EQ(form_.lblServerUptime.Caption() + form_.lblplayers.Caption(), "--");
}

TEST_F(ServerStatus, FindsWhatABoxHoldsAndKeepsItMarked) {
    Load();
    form_.Visible(true);
    form_.txtCharacterStatus.Append("\r\nanna enters\r\nBob enters\r\nAnna leaves");
    form_.mnuFindCharacter.Choose();
    HWND window = nullptr;
    ASSERT_TRUE(WaitUntil([&] {
        window = FindWindowA("#32770", "Find in Character Server Messages");
        return IsWindowVisible(window);
    }));
    const auto text = [&](int id) { return support::TextOf(GetDlgItem(window, id)); };
    const struct {
        const char* sought;
        CHARRANGE found;
        const char* told;
    } steps[] = {
        {"ANNA", {1, 5}, "From the top"}, {"ANNA", {24, 28}, ""}, {"ANNA", {1, 5}, "From the top"},
        {"carl", {1, 5}, "Not found."},   {"bob", {13, 16}, ""},
    };
    for (const auto& step : steps) {
        SetDlgItemTextA(window, IDC_frmFindMessage_txtSought, step.sought);
        SendDlgItemMessageA(window, IDC_frmFindMessage_cmdNext, BM_CLICK, 0, 0);
        CHARRANGE selected{};
        SendMessageA(form_.txtCharacterStatus.Window(), EM_EXGETSEL, 0, reinterpret_cast<LPARAM>(&selected));
        EXPECT_EQ(selected.cpMin, step.found.cpMin) << step.sought;
        EXPECT_EQ(selected.cpMax, step.found.cpMax) << step.sought;
        EXPECT_EQ(text(IDC_frmFindMessage_lblResult), step.told);
    }
}

TEST_F(ServerStatus, KeepsOnTopAndPopsItsMenusUp) {
    Load();
    form_.Visible(true);
    for (const bool on : {true, false}) {
        form_.mnuAlwaysOnTop.Choose();
        EXPECT_EQ((GetWindowLongPtrA(form_.Window(), GWL_EXSTYLE) & WS_EX_TOPMOST) != 0, on);
        EXPECT_EQ(form_.mnuAlwaysOnTop.Checked(), on);
    }
    const RECT traffic = form_.fraTraffic.Bounds();
    const struct {
        HWND window;
        UINT down;
        POINT at;
        const gui::PopupMenu& menu;
    } clicks[] = {
        {form_.Window(), WM_RBUTTONDOWN, {2, 2}, form_.mnuFormMenu},
        {form_.Window(), WM_RBUTTONDOWN, {traffic.left + 9, traffic.top + 9}, form_.mnuStats},
        {form_.txtLoginStatus.Window(), WM_LBUTTONDOWN, {5, 5}, form_.mnuLoginMessage},
        {form_.txtCharacterStatus.Window(), WM_LBUTTONDOWN, {5, 5}, form_.mnuCharacterMessage},
        {form_.txtZoneStatus.Window(), WM_LBUTTONDOWN, {5, 5}, form_.mnuZoneMessage},
    };
    for (const auto& click : clicks) {
        const LPARAM at = MAKELPARAM(click.at.x, click.at.y);
        const HMENU menu = MenuOf([&] {
            PostMessageA(click.window, click.down, 0, at);
            PostMessageA(click.window, click.down + 1, 0, at);
        });
        EXPECT_EQ(menu, click.menu.Handle());
    }
}

} // namespace
