#include "Configurator.h"

#include <commctrl.h>

#include "servers/modServerControl.h"
#include "supervision/IPDetection.h"

using modServerControl::Server;
using support::SeenBox;

namespace {

// The keys of the text boxes and of the check boxes from the first tab to the last; "-" for one without a
// key.
const auto kTexts =
    common::Split("Name IP sv1port sv2port sv3port BaseExpMultiplier JobExpMultiplier DeathBaseLoss "
                  "DeathJobLoss DropMultiplier gloginname gloginpass amcharactername "
                  "amcharacterpass amglobalname amglobalpass DefaultMap DefaultPoint_X "
                  "DefaultPoint_Y DefaultZeny GlobalGMsg MapGMsg",
                  ' ');
const auto kChecks =
    common::Split("AutoStart WarpDebug DisableEquipLimit DisableSkillLimit - DisableFleeDown "
                  "EnableMonsterKnockBack DisableMonsterActive MonsterMob SummonMonsterMob "
                  "SummonMonsterName SummonMonsterAgo SummonMonsterExp",
                  ' ');

/// A text that no other key has, with what a sloppy reader or writer would lose.
std::string ValueOf(const std::string& key) {
    return "  [" + key + "] = ;&\t\x80\x81\x9f\xff ";
}

class ServerSettings : public Configurator {
protected:
    /// The windows of a class on all pages, in the order in which the Tab key visits them.
    std::vector<HWND> Windows(const char* windowClass, LONG_PTR buttonType = -1) const {
        std::vector<HWND> windows;
        for (const gui::Form* page :
             std::initializer_list<const gui::Form*>{&form.connections, &form.experiences, &form.database,
                                                     &form.priority, &form.newPlayer, &form.misc})
            for (HWND each = nullptr; (each = FindWindowExA(page->Window(), each, windowClass, nullptr));)
                if (buttonType < 0 || (GetWindowLongPtrA(each, GWL_STYLE) & BS_TYPEMASK) == buttonType)
                    windows.push_back(each);
        return windows;
    }
    void Save() {
        form.cmdSaveSettings.Press();
        EXPECT_TRUE(support::Settle(std::chrono::minutes(3)));
    }
    /// The captions of the tabs with a star.
    std::vector<int> MarkedTabs() const {
        std::vector<int> tabs;
        for (int i = 0; i < form.mstServerConfigurator.Tabs(); ++i) {
            char caption[64] = "";
            TCITEMA item{};
            item.mask = TCIF_TEXT;
            item.pszText = caption;
            item.cchTextMax = sizeof caption;
            SendMessageA(form.mstServerConfigurator.Window(), TCM_GETITEMA, static_cast<WPARAM>(i),
                         reinterpret_cast<LPARAM>(&item));
            if (std::string_view(caption).ends_with(" *"))
                tabs.push_back(i);
        }
        return tabs;
    }
};

TEST_F(ServerSettings, SavesBackWhatItLoadedAndLeavesTheRestOfBothFilesAlone) {
    std::string text = "; of the operator\r\n\r\n[Server]\r\nname=other\r\n\tUnknown = 1 \n#x\r";
    for (const std::string& key : kTexts)
        text += key + "=" + ValueOf(key) + "\r\n";
    text += "IP =5\r\nPriority=5\r\n\r\n";
    for (const std::string& key : kChecks)
        text += key + "=0\r\n";
    const std::string tool = "[Path]\r\nPriority=0\r\nLoginPriority=1\r\nCharacterPriority=4\r\n";
    Open(text, tool);
    const auto texts = Windows("Edit");
    const auto checks = Windows("Button", BS_AUTOCHECKBOX);
    ASSERT_EQ(texts.size(), kTexts.size());
    ASSERT_EQ(checks.size(), kChecks.size());
    for (std::size_t i = 0; i < texts.size(); ++i)
        EXPECT_EQ(support::TextOf(texts[i]), ValueOf(kTexts[i]));
    fraPriority& page = form.priority;
    EXPECT_EQ(page.cboZonePrioritySettings.Text(), "Low");
    EXPECT_EQ(page.cboLoginPrioritySettings.Text(), "High");
    EXPECT_EQ(page.cboCharacterPrioritySettings.Text(), "Below Normal");
    Save();
    EXPECT_EQ(boxes.Seen(), (std::vector<SeenBox>{{"kTools", "Server settings saved", MB_OK}}));
    EXPECT_EQ(Kerno(), text);
    EXPECT_EQ(Tool(), tool);

    for (std::size_t i = 0; i < checks.size(); ++i) {
        const bool bound = kChecks[i] != "-";
        const std::string line = "\n" + kChecks[i];
        SendMessageA(checks[i], BM_CLICK, 0, 0);
        Save();
        EXPECT_EQ(Kerno(), bound ? common::ReplaceAll(text, line + "=0", line + "=1") : text);
        form.cmdReload.Press();
        for (const HWND box : checks)
            EXPECT_EQ(SendMessageA(box, BM_GETCHECK, 0, 0), box == checks[i]) << line;
        SendMessageA(checks[i], BM_CLICK, 0, 0);
    }
    SetWindowTextA(texts[0], "new");
    page.cboZonePrioritySettings.ListIndex(0);
    page.cboLoginPrioritySettings.ListIndex(2);
    Save();
    text = common::ReplaceAll(text, ValueOf("Name"), "new");
    EXPECT_EQ(Kerno(), common::ReplaceAll(text, "Priority=5", "Priority=0"));
    EXPECT_EQ(Tool(), common::ReplaceAll(tool, "LoginPriority=1", "LoginPriority=2"));
}

TEST_F(ServerSettings, AppendsWhatAFileLacksInItsOrder) {
    Open("Other=1\r\n", "Other=2\r\n");
    Save();
    std::string keys;
    const std::string text = Kerno();
    for (const std::string_view line : common::Lines(text))
        keys += " " + std::string(line.substr(0, line.find('=')));
    EXPECT_EQ(keys, " Other Name IP sv1port sv2port sv3port BaseExpMultiplier JobExpMultiplier DeathBaseLoss "
                    "DeathJobLoss DefaultMap DefaultPoint_X DefaultPoint_Y DefaultZeny AutoStart WarpDebug "
                    "EnableMonsterKnockBack DisableMonsterActive DisableEquipLimit DisableSkillLimit "
                    "DisableFleeDown MonsterMob SummonMonsterMob SummonMonsterName SummonMonsterAgo "
                    "SummonMonsterExp DropMultiplier GlobalGMsg MapGMsg Priority gloginname gloginpass "
                    "amcharactername amcharacterpass amglobalname amglobalpass");
    EXPECT_EQ(Tool(), "Other=2\r\nLoginPriority=0\r\nCharacterPriority=0\r\n");
}

TEST_F(ServerSettings, ShowsBadValuesAsWhatSaveThenWrites) {
    const std::tuple<std::string, int, int> cases[] = {{"", 0, 0},      {"2", 1, 2},   {"-1", 1, 3},
                                                       {"1x", 0, 1},    {" 1 ", 1, 1}, {"3.5", 1, 4},
                                                       {"40000", 1, 3}, {"1e99", 1, 3}};
    for (const auto& [text, check, index] : cases) {
        Open("AutoStart=" + text + "\r\nPriority=" + text + "\r\n", "LoginPriority=" + text + "\r\n");
        EXPECT_EQ(form.misc.chkAutoStart.Value(), check) << text;
        EXPECT_EQ(form.priority.cboZonePrioritySettings.ListIndex(), index) << text;
        Save();
        const std::string priority = "Priority=" + std::to_string(index) + "\r\n";
        EXPECT_TRUE(Kerno().starts_with("AutoStart=" + std::to_string(check) + "\r\n" + priority)) << text;
        EXPECT_EQ(Tool(), "Login" + priority + "CharacterPriority=0\r\n") << text;
    }
}

TEST_F(ServerSettings, MarksWhatDiffersFromTheFileAndSaysWhatWasSaved) {
    Open("Name=a\r\nAutoStart=0\r\nPriority=3\r\n");
    form.Visible(true);
    EXPECT_EQ(form.lblChanges.Caption(), "");
    form.connections.txtServerName.Text("b");
    form.misc.chkAutoStart.Value(1);
    EXPECT_TRUE(support::WaitUntil([&] { return MarkedTabs() == std::vector<int>{0, 5}; }));
    EXPECT_EQ(form.lblChanges.Caption(), "Not saved yet: Name, AutoStart");
    EXPECT_TRUE(form.connections.txtServerName.Marked());
    form.misc.chkAutoStart.Value(0);
    EXPECT_TRUE(support::WaitUntil([&] { return MarkedTabs() == std::vector<int>{0}; }));
    Save();
    EXPECT_EQ(form.lblChanges.Caption(), "Saved: Name");
    EXPECT_TRUE(MarkedTabs().empty());
    EXPECT_FALSE(form.connections.txtServerName.Marked());
    Save();
    EXPECT_EQ(form.lblChanges.Caption(), "Saved. Nothing was changed here.");
    form.connections.txtServerName.Text("c");
    form.cmdReload.Press();
    EXPECT_EQ(form.lblChanges.Caption(), "");
}

TEST_F(ServerSettings, WhatTheFileHasMeanwhileIsKeptOrAskedAbout) {
    const std::string both =
        "These settings were changed here, and meanwhile in the file too:\n\nName\n\n"
        "Yes saves what this window says, No keeps what the file says, Cancel saves nothing.";
    const std::pair<int, const char*> answers[] = {{IDYES, "window"}, {IDNO, "file"}, {IDCANCEL, nullptr}};
    for (const auto& [answer, name] : answers) {
        Open("Name=a\r\nIP=1\r\ngloginpass=x\r\nsv1port=1\r\n");
        form.connections.txtServerName.Text("window");
        form.connections.txtLoginPort.Text("2");
        const std::string meanwhile = "Name=file\r\nIP=9\r\ngloginpass=y\r\nsv1port=1\r\n";
        support::WriteFile(kerno.INIPath(), meanwhile);
        boxes.Clear();
        boxes.Answer(answer);
        Save();
        EXPECT_EQ(boxes.Texts().front(), both);
        if (!name) {
            EXPECT_EQ(Kerno(), meanwhile);
            EXPECT_EQ(form.connections.txtServerName.Text(), "window");
            continue;
        }
        EXPECT_TRUE(
            Kerno().starts_with(std::string("Name=") + name + "\r\nIP=9\r\ngloginpass=y\r\nsv1port=2\r\n"))
            << Kerno();
        EXPECT_EQ(form.connections.txtServerIP.Text(), "9");
    }
}

TEST_F(ServerSettings, AsksBeforeItMakesAFileThatHasGone) {
    for (const int answer : {IDNO, IDYES}) {
        Open("Name=a\r\n");
        DeleteFileA(kerno.INIPath().c_str());
        boxes.Clear();
        boxes.Answer(answer);
        Save();
        EXPECT_TRUE(boxes.Texts().front().starts_with("There is no Kerno.ini at " + kerno.INIPath()));
        EXPECT_EQ(common::FileExists(kerno.INIPath()), answer == IDYES);
    }
}

TEST_F(ServerSettings, FilesThatCannotBeUsed) {
    form.Load();
    EXPECT_FALSE(form.Loaded());
    EXPECT_TRUE(support::Settle());
    EXPECT_EQ(boxes.Seen(), (std::vector<SeenBox>{{"kTools",
                                                   "Can't find 'Kerno.ini' in current directory. The server "
                                                   "configurator will now close",
                                                   MB_OK}}));
    const std::string text = "Name=a\r\nIP=b\r\n";
    Open(text);
    form.connections.txtServerName.Text("edited");
    support::WriteFile(kerno.INIPath(), "");
    boxes.Clear();
    form.cmdReload.Press();
    EXPECT_EQ(form.connections.txtServerName.Text(), "edited");
    support::WriteFile(kerno.INIPath(), text);
    SetFileAttributesA(kerno.INIPath().c_str(), FILE_ATTRIBUTE_READONLY);
    Save();
    SetFileAttributesA(kerno.INIPath().c_str(), FILE_ATTRIBUTE_NORMAL);
    EXPECT_EQ(Kerno(), text);
    ASSERT_TRUE(support::WaitUntil([&] { return boxes.Seen().size() == 2; }));
    EXPECT_EQ(boxes.Texts()[0].substr(0, 8) + boxes.Texts()[1].substr(0, 8), "Error 62Error 70");
}

TEST_F(ServerSettings, RestartsTheServersThatTheUserWantsRestarted) {
    HWND before[3];
    for (const Server server : modServerControl::kServers)
        ASSERT_TRUE(before[static_cast<int>(server)] = servers.Launch(server));
    Open("Priority=3\r\n");
    // The window is closed in the middle of the zone server's shutdown, which takes its time.
    const support::Meanwhile close([&] {
        if (!IsWindow(before[2]))
            form.Unload();
    });
    boxes.Answer(IDYES).Answer(IDNO).Answer(IDYES);
    Save();
    EXPECT_FALSE(form.Loaded());
    std::vector<SeenBox> expected{{"kTools", "Server settings saved", MB_OK}};
    for (const std::string server : {"Login", "Character", "Zone"})
        expected.push_back({"kTools",
                            "Kerno " + server + " Server is currently running. Do you want to restart it ?",
                            MB_YESNO});
    EXPECT_EQ(boxes.Seen(), expected);
    for (const Server server : {Server::Login, Server::Zone})
        EXPECT_TRUE(support::WaitUntil([&] {
            const HWND now = servers.MainWindow(server);
            return now && now != before[static_cast<int>(server)];
        })) << modServerControl::ComponentOf(server).name;
    EXPECT_EQ(servers.MainWindow(Server::Character), before[1]);
}

TEST_F(ServerSettings, ChangesThePrioritiesOfRunningServers) {
    Open("Priority=2\r\n");
    form.Visible(true);
    form.mstServerConfigurator.Tab(3);
    fraPriority& page = form.priority;
    EXPECT_TRUE(IsWindowVisible(page.Window()) && !IsWindowVisible(form.connections.Window()));
    EXPECT_TRUE(page.lblNotRunning1.Visible() && !page.cboLoginPriority.Visible());
    const HWND login = servers.Launch(Server::Login);
    const HWND zone = servers.Launch(Server::Zone);
    modServerControl::SetProcessPriority(zone, IDLE_PRIORITY_CLASS);
    // The page follows the servers by itself.
    EXPECT_TRUE(support::WaitUntil(
        [&] { return page.cboLoginPriority.Visible() && page.cboZonePriority.Visible(); }));
    page.cboLoginPriority.ListIndex(1);
    form.cmdReload.Press();
    EXPECT_EQ(page.cboLoginPriority.Text(), "Normal");
    EXPECT_EQ(page.cboZonePriority.Text(), "Low");
    EXPECT_TRUE(page.cboLoginPriority.Visible() && !page.lblNotRunning1.Visible());
    // Typing chooses in each list but the zone server's own.
    SendMessageA(page.cboLoginPriority.Window(), WM_CHAR, 'B', 0);
    SendMessageA(page.cboZonePriority.Window(), WM_CHAR, 'R', 0);
    EXPECT_EQ(page.cboLoginPriority.Text(), "Below Normal");
    EXPECT_EQ(page.cboZonePriority.Text(), "Low");
    page.cboZonePriority.ListIndex(1);
    page.cmdApplyPriorityChanges.Press();
    EXPECT_EQ(modServerControl::GetProcessPriority(login), DWORD{BELOW_NORMAL_PRIORITY_CLASS});
    EXPECT_EQ(modServerControl::GetProcessPriority(zone), DWORD{HIGH_PRIORITY_CLASS});
    // A class that the system refuses is not shown, what changes elsewhere is.
    page.cboLoginPriority.ListIndex(2);
    page.cmdApplyPriorityChanges.Press();
    EXPECT_EQ(page.cboLoginPriority.Text(), "Below Normal");
    page.cboLoginPriority.ListIndex(0);
    modServerControl::SetProcessPriority(zone, IDLE_PRIORITY_CLASS);
    EXPECT_TRUE(support::WaitUntil([&] { return page.cboZonePriority.Text() == "Low"; }));
    EXPECT_EQ(page.cboLoginPriority.Text(), "Realtime") << "a choice that waits for the button stays";
    EXPECT_EQ(Kerno(), "Priority=2\r\n");
}

TEST_F(ServerSettings, OffersTheDetectedAddress) {
    const std::string local = supervision::DetectLocalAddresses().addresses.back();
    ASSERT_NE(local, "");
    const std::string offer = " is detected as current IP address. Use it ?";
    const std::tuple<const char*, std::string, int, std::string> cases[] = {
        {"IPDetectionMethod=0\r\n", local + offer, IDYES, local},
        {"DynamicHostname=localhost\r\n", local + offer, IDNO, "old"},
        {"IPDetectionMethod=1\r\nDynamicHostname=127.0.0.9\r\n", "127.0.0.9" + offer, IDYES, "127.0.0.9"},
        {"IPDetectionMethod=1\r\nDynamicHostname=no.such.host.invalid\r\n", "IP Detection Failed", 0, "old"}};
    for (const auto& [settings, message, answer, shown] : cases) {
        Open("IP=old\r\n", settings);
        boxes.Clear();
        if (answer)
            boxes.Answer(answer);
        form.connections.cmdEnterIP.Press();
        EXPECT_TRUE(support::Settle());
        EXPECT_EQ(boxes.Seen(),
                  (std::vector<SeenBox>{{"kTools", message, answer ? unsigned{MB_YESNO} : MB_OK}}));
        EXPECT_EQ(form.connections.txtServerIP.Text(), shown) << settings;
        EXPECT_EQ(Kerno(), "IP=old\r\n");
    }
}

} // namespace
