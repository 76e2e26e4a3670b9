#include "config/frmServerSettings.h"

#include "common/Files.h"
#include "config/SettingNumbers.h"
#include "gui/MsgBox.h"
#include "servers/Databases.h"
#include "servers/KernoKeys.h"
#include "servers/modServerControl.h"
#include "settings/kToolsSettings.h"
#include "supervision/RestartAll.h"

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
        // The box belongs to the window in front. This form is still hidden, and the form behind it is to
        // wait for the answer.
        gui::MsgBoxNow("Can't find 'Kerno.ini' in current directory. The server configurator will now close");
        Unload();
        return;
    }
    kerno_.INIPath(kernoIni);
    LoadSettings();
}

void frmServerSettings::LoadSettings() {
    binding::Load({&settings_});
    priority.ShowCurrentPriorities();
}

gui::Task<> frmServerSettings::cmdSaveSettings_Click() {
    SaveSettings();
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
