#include "config/frmServerSettings.h"

#include "common/Files.h"
#include "config/SettingNumbers.h"
#include "gui/MsgBox.h"
#include "servers/Databases.h"
#include "servers/KernoKeys.h"
#include "servers/modServerControl.h"
#include "settings/IniText.h"
#include "settings/kToolsSettings.h"
#include "supervision/RestartAll.h"

#include <algorithm>

using gui::kApplicationTitle;
using suite::Databases;
namespace key = suite::key;

// The order in which the settings are shown and saved. Keys that a file lacks are appended to it in this
// order.
frmServerSettings::frmServerSettings()
    : Form(IDD_frmServerSettings),
      settings_{
          {kerno_, key::kServerName, connections.txtServerName},
          {kerno_, key::kServerAddress, connections.txtServerIP},
          {kerno_, key::kLoginPort, connections.txtLoginPort},
          {kerno_, key::kCharacterPort, connections.txtCharaPort},
          {kerno_, key::kZonePort, connections.txtGamePort},
          {kerno_, key::kBaseExpMultiplier, experiences.txtBaseXPMultiplier},
          {kerno_, key::kJobExpMultiplier, experiences.txtJobXPMultiplier},
          {kerno_, key::kDeathBaseLoss, experiences.txtBaseXPLoss},
          {kerno_, key::kDeathJobLoss, experiences.txtJobXPLoss},
          {kerno_, key::kDefaultMap, newPlayer.txtMapName},
          {kerno_, key::kDefaultPointX, newPlayer.txtStartingX},
          {kerno_, key::kDefaultPointY, newPlayer.txtStartingY},
          {kerno_, key::kDefaultZeny, newPlayer.txtStartingZeny},
          {kerno_, key::kAutoStart, misc.chkAutoStart, config::CheckValueOf},
          {kerno_, key::kWarpDebug, misc.chkWarpDebug, config::CheckValueOf},
          {kerno_, key::kEnableMonsterKnockBack, misc.chkEnableMonsterKnockback, config::CheckValueOf},
          {kerno_, key::kDisableMonsterActive, misc.chkDisableMonsterActive, config::CheckValueOf},
          {kerno_, key::kDisableEquipLimit, misc.chkDisableEquipLimit, config::CheckValueOf},
          {kerno_, key::kDisableSkillLimit, misc.chkDisableSkillLimit, config::CheckValueOf},
          {kerno_, key::kDisableFleeDown, misc.chkDisableFleedown, config::CheckValueOf},
          {kerno_, key::kMonsterMob, misc.chkMonsterMob, config::CheckValueOf},
          {kerno_, key::kSummonMonsterMob, misc.chkSummonMonsterMob, config::CheckValueOf},
          {kerno_, key::kSummonMonsterName, misc.chkSummonMonsterName, config::CheckValueOf},
          {kerno_, key::kSummonMonsterAgo, misc.chkSummonMonsterAgo, config::CheckValueOf},
          {kerno_, key::kSummonMonsterExp, misc.chkSummonMonsterExp, config::CheckValueOf},
          {kerno_, key::kDropMultiplier, experiences.txtItemDrop},
          {kerno_, key::kGlobalMessage, misc.txtGlobalMessage},
          {kerno_, key::kMapMessage, misc.txtMapMessage},
          // The zone server reads its own priority, so that one lives in its file.
          {kerno_, key::kZonePriority, priority.cboZonePrioritySettings, config::PriorityOf},
          {kTools_, settings::key::kLoginPriority, priority.cboLoginPrioritySettings, config::PriorityOf},
          {kTools_, settings::key::kCharacterPriority, priority.cboCharacterPrioritySettings,
           config::PriorityOf},
          {kerno_, Databases()[0].userKey, database.txtLoginName},
          {kerno_, Databases()[0].passwordKey, database.txtLoginPassword},
          {kerno_, Databases()[1].userKey, database.txtCharacterName},
          {kerno_, Databases()[1].passwordKey, database.txtCharacterPassword},
          {kerno_, Databases()[2].userKey, database.txtGlobalName},
          {kerno_, Databases()[2].passwordKey, database.txtGlobalPassword},
      } {}

void frmServerSettings::Form_Load() {
    kTools_.INIPath(settings::kToolsIniPath());
    const std::string kernoIni = settings::KernoIniPath(modServerControl::KernoPath());
    if (!common::FileExists(kernoIni)) {
        // The box belongs to the window in front: this one goes unseen.
        gui::Tell("Can't find 'Kerno.ini' in current directory. The server configurator will now close");
        return Unload();
    }
    kerno_.INIPath(kernoIni);
    LoadSettings();
}

void frmServerSettings::LoadSettings() {
    binding::Load({&settings_});
    priority.ShowCurrentPriorities();
    saved_.clear();
    tmrChanges_Timer();
}

std::string frmServerSettings::ChangedKeys() const {
    std::string keys;
    for (const binding::Setting& setting : settings_)
        if (setting.Changed())
            keys.append(keys.empty() ? "" : ", ").append(setting.Key());
    return keys;
}

void frmServerSettings::tmrChanges_Timer() {
    std::vector<const gui::Form*> changedPages;
    for (const binding::Setting& setting : settings_) {
        setting.Control().Marked(setting.Changed());
        if (setting.Changed())
            changedPages.push_back(&setting.Control().Parent());
    }
    for (const gui::Form* page : std::initializer_list<const gui::Form*>{
             &connections, &experiences, &database, &priority, &newPlayer, &misc})
        mstServerConfigurator.Mark(*page, std::ranges::count(changedPages, page) > 0);
    const std::string keys = ChangedKeys();
    lblChanges.Caption(keys.empty() ? saved_ : "Not saved yet: " + keys);
}

/// Other windows of the tool write into these files too, and people do. What was not touched here follows the
/// file; what was changed on both sides is asked about. False when nothing is to be saved.
gui::Task<bool> frmServerSettings::AgreeWithFiles() {
    if (!common::FileExists(kerno_.INIPath())) {
        const std::string question =
            "There is no Kerno.ini at " + kerno_.INIPath() +
            " any more. Save would make one that holds nothing but the settings of this "
            "window. Make it ?";
        const int answer = co_await MsgBox(question, MB_YESNO | MB_ICONQUESTION, kApplicationTitle);
        co_return answer == IDYES;
    }
    std::vector<std::pair<binding::Setting*, std::string>> changedByBoth;
    std::string keys;
    const std::string kernoText = kerno_.Text();
    const std::string toolText = kTools_.Text();
    for (binding::Setting& setting : settings_) {
        const auto present =
            settings::FindValue(&setting.File() == &kerno_ ? kernoText : toolText, setting.Key());
        if (!present || *present == setting.Loaded() || present == setting.Value())
            continue;
        if (!setting.Changed()) {
            setting.Show(*present);
            continue;
        }
        changedByBoth.emplace_back(&setting, *present);
        keys.append("\n").append(setting.Key());
    }
    if (changedByBoth.empty())
        co_return true;
    const std::string question =
        "These settings were changed here, and meanwhile in the file too:\n" + keys +
        "\n\nYes saves what this window says, No keeps what the file says, Cancel saves nothing.";
    const int answer = co_await MsgBox(question, MB_YESNOCANCEL | MB_ICONQUESTION, kApplicationTitle);
    if (answer == IDNO)
        for (const auto& [setting, text] : changedByBoth)
            setting->Show(text);
    co_return answer == IDYES || answer == IDNO;
}

gui::Task<> frmServerSettings::cmdSaveSettings_Click() {
    const bool agreed = co_await AgreeWithFiles();
    if (!agreed)
        co_return;
    const std::string changed = ChangedKeys();
    SaveSettings();
    for (binding::Setting& setting : settings_)
        setting.Saved();
    saved_ = changed.empty() ? "Saved. Nothing was changed here." : "Saved: " + changed;
    tmrChanges_Timer();
    co_await MsgBox("Server settings saved", MB_OK, kApplicationTitle);
    for (const modServerControl::Server server : modServerControl::kServers) {
        if (!modServerControl::IsRunning(server))
            continue;
        const std::string question = modServerControl::RestartQuestion(server);
        const int answer = co_await MsgBox(question, MB_YESNO, kApplicationTitle);
        if (answer != IDYES)
            continue;
        const supervision::Restart restart{
            .asker = journal::Asker::Configurator, .message = {}, .meanwhile = {}, .servers = {server}};
        const bool done = co_await supervision::RestartAll(restart, kTools_);
        if (!done)
            Tell(supervision::kRestartUnderWay, MB_OK, kApplicationTitle);
    }
}
