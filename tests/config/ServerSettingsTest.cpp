#include "Configurator.h"

#include "common/Text.h"
#include "servers/modServerControl.h"
#include "supervision/IPDetection.h"
#include "support/Wait.h"

using modServerControl::Server;
using support::SeenBox;

namespace {

/// The keys of Kerno.ini in the order in which they are written, each with a value that no other has.
const std::pair<const char*, const char*> kTexts[] = {{"Name", "  A = B ; \x80\x81\x9f\xfe\xff "},
                                                      {"IP", "1.2.3.4"},
                                                      {"sv1port", "6900"},
                                                      {"sv2port", "port"},
                                                      {"sv3port", "-1"},
                                                      {"BaseExpMultiplier", "2.50"},
                                                      {"JobExpMultiplier", "007"},
                                                      {"DeathBaseLoss", "3"},
                                                      {"DeathJobLoss", "4"},
                                                      {"DefaultMap", "town"},
                                                      {"DefaultPoint_X", "70000"},
                                                      {"DefaultPoint_Y", "6"},
                                                      {"DefaultZeny", "99999999999"},
                                                      {"DropMultiplier", "8"},
                                                      {"GlobalGMsg", "[Hello] &all\tof you"},
                                                      {"MapGMsg", ""},
                                                      {"gloginname", "l"},
                                                      {"gloginpass", "lp=="},
                                                      {"amcharactername", "c"},
                                                      {"amcharacterpass", "cp"},
                                                      {"amglobalname", "g"},
                                                      {"amglobalpass", "gp"}};

const char* const kChecks[] = {
    "AutoStart",         "WarpDebug",         "EnableMonsterKnockBack", "DisableMonsterActive",
    "DisableEquipLimit", "DisableSkillLimit", "DisableFleeDown",        "MonsterMob",
    "SummonMonsterMob",  "SummonMonsterName", "SummonMonsterAgo",       "SummonMonsterExp"};

class ServerSettings : public Configurator {
protected:
    std::vector<gui::TextBox*> TextBoxes() {
        return {&form.connections.txtServerName,
                &form.connections.txtServerIP,
                &form.connections.txtLoginPort,
                &form.connections.txtCharaPort,
                &form.connections.txtGamePort,
                &form.experiences.txtBaseXPMultiplier,
                &form.experiences.txtJobXPMultiplier,
                &form.experiences.txtBaseXPLoss,
                &form.experiences.txtJobXPLoss,
                &newPlayer.txtMapName,
                &newPlayer.txtStartingX,
                &newPlayer.txtStartingY,
                &newPlayer.txtStartingZeny,
                &form.experiences.txtItemDrop,
                &form.misc.txtGlobalMessage,
                &form.misc.txtMapMessage,
                &form.database.txtLoginName,
                &form.database.txtLoginPassword,
                &form.database.txtCharacterName,
                &form.database.txtCharacterPassword,
                &form.database.txtGlobalName,
                &form.database.txtGlobalPassword};
    }
    std::vector<gui::CheckBox*> CheckBoxes() {
        MiscPage& misc = form.misc;
        return {&misc.chkAutoStart,
                &misc.chkWarpDebug,
                &misc.chkEnableMonsterKnockback,
                &misc.chkDisableMonsterActive,
                &misc.chkDisableEquipLimit,
                &misc.chkDisableSkillLimit,
                &misc.chkDisableFleedown,
                &misc.chkMonsterMob,
                &misc.chkSummonMonsterMob,
                &misc.chkSummonMonsterName,
                &misc.chkSummonMonsterAgo,
                &misc.chkSummonMonsterExp};
    }
    void Save() { form.cmdSaveSettings.Press(); }
};

TEST_F(ServerSettings, SavesBackWhatItLoadedAndLeavesTheRestOfBothFilesAlone) {
    std::string kerno = "; of the operator\r\n\r\n[Server]\r\nname=other\r\n\tUnknown = 1 \n#x\r";
    for (const auto& [key, value] : kTexts)
        kerno += std::string(key) + "=" + value + "\r\n";
    kerno += "IP =5\r\nPriority=5\r\n\r\n";
    for (const char* key : kChecks)
        kerno += std::string(key) + "=0\r\n";
    const std::string tool = "[Path]\r\nPriority=0\r\nLoginPriority=1\r\nCharacterPriority=4\r\n";
    Open(kerno, tool);
    for (std::size_t i = 0; i < std::size(kTexts); ++i)
        EXPECT_EQ(TextBoxes()[i]->Text(), kTexts[i].second) << kTexts[i].first;
    EXPECT_EQ(form.priority.cboZonePrioritySettings.Text(), "Low");
    EXPECT_EQ(form.priority.cboLoginPrioritySettings.Text(), "High");
    EXPECT_EQ(form.priority.cboCharacterPrioritySettings.Text(), "Below Normal");
    form.misc.chkDisableLevelLimit.Value(1);
    Save();
    EXPECT_EQ(boxes.Seen(), (std::vector<SeenBox>{{"kTools", "Server settings saved", MB_OK}}));
    EXPECT_EQ(Kerno(), kerno);
    EXPECT_EQ(Tool(), tool);

    for (std::size_t i = 0; i < std::size(kChecks); ++i) {
        const std::string off = std::string("\r\n") + kChecks[i] + "=0";
        const std::string on = std::string("\r\n") + kChecks[i] + "=1";
        const std::string changed = common::ReplaceAll(kerno, off, on);
        CheckBoxes()[i]->Value(1);
        Save();
        EXPECT_EQ(Kerno(), changed);
        CheckBoxes()[i]->Value(0);
        form.cmdReload.Press();
        for (gui::CheckBox* box : CheckBoxes())
            EXPECT_EQ(box->Value(), box == CheckBoxes()[i]) << on;
        CheckBoxes()[i]->Value(0);
    }
    TextBoxes()[0]->Text("new");
    form.priority.cboZonePrioritySettings.ListIndex(0);
    form.priority.cboLoginPrioritySettings.ListIndex(2);
    Save();
    EXPECT_EQ(Kerno(), common::ReplaceAll(common::ReplaceAll(kerno, kTexts[0].second, "new"), "Priority=5",
                                          "Priority=0"));
    EXPECT_EQ(Tool(), common::ReplaceAll(tool, "LoginPriority=1", "LoginPriority=2"));
}

TEST_F(ServerSettings, ShowsBadValuesAsWhatSaveThenWrites) {
    const struct {
        const char* text;
        int check;
        int priority;
    } cases[] = {{"", 0, 0},    {"abc", 0, 0}, {"2", 1, 2},   {"-1", 1, 3},    {"1x", 0, 1},  {"0.4", 0, 0},
                 {" 1 ", 1, 1}, {"6", 1, 3},   {"3.5", 1, 4}, {"40000", 0, 3}, {"1e99", 0, 3}};
    for (const auto& c : cases) {
        const std::string text = c.text;
        Open("AutoStart=" + text + "\r\nPriority=" + text + "\r\n",
             "LoginPriority=" + text + "\r\nCharacterPriority=3\r\n");
        const std::string priority = std::to_string(c.priority);
        EXPECT_EQ(form.misc.chkAutoStart.Value(), c.check) << text;
        EXPECT_EQ(form.priority.cboZonePrioritySettings.ListIndex(), c.priority) << text;
        Save();
        const std::string start =
            "AutoStart=" + std::to_string(c.check) + "\r\nPriority=" + priority + "\r\nName=\r\nIP=\r\n";
        EXPECT_EQ(Kerno().substr(0, start.size()), start) << text;
        EXPECT_EQ(Tool(), "LoginPriority=" + priority + "\r\nCharacterPriority=3\r\n") << text;
    }
}

TEST_F(ServerSettings, FilesThatCannotBeUsed) {
    form.Load();
    EXPECT_FALSE(form.Loaded());
    EXPECT_EQ(boxes.Seen(), (std::vector<SeenBox>{{"kTools",
                                                   "Can't find 'Kerno.ini' in current directory. The server "
                                                   "configurator will now close",
                                                   MB_OK}}));
    support::WriteFile(kernoIni, "");
    form.Load();
    EXPECT_FALSE(form.Loaded());

    const std::string kerno = "Name=a\r\nIP=b\r\n";
    Open(kerno);
    form.connections.txtServerName.Text("edited");
    support::WriteFile(kernoIni, "");
    boxes.Clear();
    form.cmdReload.Press();
    EXPECT_EQ(form.connections.txtServerName.Text(), "edited");
    support::WriteFile(kernoIni, kerno);
    SetFileAttributesA(kernoIni.c_str(), FILE_ATTRIBUTE_READONLY);
    Save();
    SetFileAttributesA(kernoIni.c_str(), FILE_ATTRIBUTE_NORMAL);
    EXPECT_EQ(Kerno(), kerno);
    ASSERT_EQ(boxes.Seen().size(), 2u);
    EXPECT_TRUE(boxes.Texts()[0].starts_with("Error 62")) << boxes.Texts()[0];
    EXPECT_TRUE(boxes.Texts()[1].starts_with("Error 70")) << boxes.Texts()[1];
}

TEST_F(ServerSettings, RestartsTheServersThatTheUserWantsRestarted) {
    HWND before[3];
    for (const Server server : modServerControl::kServers)
        ASSERT_TRUE(before[static_cast<int>(server)] = servers.Launch(server));
    Open("Priority=3\r\n");
    // The window is closed in the middle of the zone server's shutdown, which takes its time.
    static HWND zone;
    static gui::Form* window;
    zone = before[2];
    window = &form;
    const auto closeWhenGone = [](HWND, UINT, UINT_PTR timer, DWORD) {
        if (IsWindow(zone))
            return;
        KillTimer(nullptr, timer);
        window->Unload();
    };
    boxes.Answer(IDYES).Answer(IDNO).Answer(IDYES, [&] { SetTimer(nullptr, 0, 10, closeWhenGone); });
    Save();
    EXPECT_FALSE(form.Loaded());
    const auto question = [](const std::string& server) {
        return SeenBox{"kTools", server + " is currently running. Do you want to restart it ?", MB_YESNO};
    };
    EXPECT_EQ(boxes.Seen(), (std::vector<SeenBox>{{"kTools", "Server settings saved", MB_OK},
                                                  question("Kerno Login Server"),
                                                  question("Kerno Character Server"),
                                                  question("Kerno Zone Server")}));
    for (const Server server : {Server::Login, Server::Zone})
        EXPECT_TRUE(support::WaitUntil([&] {
            const HWND now = servers.MainWindow(server);
            return now && now != before[static_cast<int>(server)];
        })) << modServerControl::ComponentOf(server).name;
    EXPECT_EQ(servers.MainWindow(Server::Character), before[1]);
}

TEST_F(ServerSettings, ChangesThePrioritiesOfRunningServers) {
    Open("Priority=2\r\n");
    PriorityPage& page = form.priority;
    EXPECT_FALSE(page.cboLoginPriority.Visible() || page.cboLoginPriority.Enabled());
    EXPECT_TRUE(page.lblNotRunning1.Visible());
    const HWND login = servers.Launch(Server::Login);
    const HWND zone = servers.Launch(Server::Zone);
    modServerControl::SetProcessPriority(zone, IDLE_PRIORITY_CLASS);
    // The lists do not follow by themselves, and what is not shown is not applied.
    page.cboLoginPriority.ListIndex(1);
    page.cmdApplyPriorityChanges.Press();
    EXPECT_EQ(modServerControl::GetProcessPriority(login), DWORD{NORMAL_PRIORITY_CLASS});
    form.cmdReload.Press();
    EXPECT_EQ(page.cboLoginPriority.Text() + page.cboZonePriority.Text(), "NormalLow");
    EXPECT_TRUE(page.cboLoginPriority.Visible() && page.cboZonePriority.Visible());
    EXPECT_TRUE(page.lblNotRunning2.Visible() && !page.lblNotRunning1.Visible());

    // Typing chooses in each list but the zone server's own.
    SendMessageA(page.cboLoginPriority.Window(), WM_CHAR, 'B', 0);
    SendMessageA(page.cboZonePriority.Window(), WM_CHAR, 'R', 0);
    EXPECT_EQ(page.cboLoginPriority.Text() + page.cboZonePriority.Text(), "Below NormalLow");
    page.cboZonePriority.ListIndex(1);
    page.cmdApplyPriorityChanges.Press();
    EXPECT_EQ(modServerControl::GetProcessPriority(login), DWORD{BELOW_NORMAL_PRIORITY_CLASS});
    EXPECT_EQ(modServerControl::GetProcessPriority(zone), DWORD{HIGH_PRIORITY_CLASS});
    EXPECT_EQ(Kerno(), "Priority=2\r\n");
}

TEST_F(ServerSettings, OffersTheDetectedAddress) {
    const std::string local = supervision::DetectLocalAddresses().back();
    ASSERT_NE(local, "");
    const std::string offer = " is detected as current IP address. Use it ?";
    const struct {
        const char* settings;
        std::string message;
        int answer;
        std::string shown;
    } cases[] = {
        {"IPDetectionMethod=0\r\n", local + offer, IDYES, local},
        {"DynamicHostname=localhost\r\n", local + offer, IDNO, "old"},
        {"IPDetectionMethod=1\r\nDynamicHostname=127.0.0.9\r\n", "127.0.0.9" + offer, IDYES, "127.0.0.9"},
        {"IPDetectionMethod=1\r\nDynamicHostname=no.such.host.invalid\r\n", "IP Detection Failed", 0, "old"},
        {"IPDetectionMethod=2\r\nDynamicHostname=localhost\r\n", "IP Detection Failed", 0, "old"}};
    for (const auto& c : cases) {
        Open("IP=old\r\n", c.settings);
        boxes.Clear();
        if (c.answer)
            boxes.Answer(c.answer);
        form.connections.cmdEnterIP.Press();
        EXPECT_EQ(boxes.Seen(),
                  (std::vector<SeenBox>{{"kTools", c.message, c.answer ? unsigned{MB_YESNO} : MB_OK}}));
        EXPECT_EQ(form.connections.txtServerIP.Text(), c.shown) << c.settings;
        EXPECT_EQ(Kerno(), "IP=old\r\n");
    }
}

} // namespace
