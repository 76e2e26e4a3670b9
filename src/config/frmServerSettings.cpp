#include "config/frmServerSettings.h"

#include "common/Files.h"
#include "gui/MsgBox.h"
#include "servers/Databases.h"
#include "servers/KernoKeys.h"
#include "servers/modServerControl.h"
#include "settings/kToolsSettings.h"

using gui::kApplicationTitle;
using suite::Databases;
namespace key = suite::key;

// Settings are read and written in this order; ones that a file lacks come to stand in it behind each other.
frmServerSettings::frmServerSettings()
    : Form(IDD_frmServerSettings),
      rows_{
          {&kerno_, key::kServerName, &connections.txtServerName},
          {&kerno_, key::kServerAddress, &connections.txtServerIP},
          {&kerno_, key::kLoginPort, &connections.txtLoginPort},
          {&kerno_, key::kCharacterPort, &connections.txtCharaPort},
          {&kerno_, key::kZonePort, &connections.txtGamePort},
          {&kerno_, key::kBaseExpMultiplier, &experiences.txtBaseXPMultiplier},
          {&kerno_, key::kJobExpMultiplier, &experiences.txtJobXPMultiplier},
          {&kerno_, key::kDeathBaseLoss, &experiences.txtBaseXPLoss},
          {&kerno_, key::kDeathJobLoss, &experiences.txtJobXPLoss},
          {&kerno_, key::kDefaultMap, &newPlayer.txtMapName},
          {&kerno_, key::kDefaultPointX, &newPlayer.txtStartingX},
          {&kerno_, key::kDefaultPointY, &newPlayer.txtStartingY},
          {&kerno_, key::kDefaultZeny, &newPlayer.txtStartingZeny},
          {&kerno_, key::kAutoStart, &misc.chkAutoStart},
          {&kerno_, key::kWarpDebug, &misc.chkWarpDebug},
          {&kerno_, key::kEnableMonsterKnockBack, &misc.chkEnableMonsterKnockback},
          {&kerno_, key::kDisableMonsterActive, &misc.chkDisableMonsterActive},
          {&kerno_, key::kDisableEquipLimit, &misc.chkDisableEquipLimit},
          {&kerno_, key::kDisableSkillLimit, &misc.chkDisableSkillLimit},
          {&kerno_, key::kDisableFleeDown, &misc.chkDisableFleedown},
          {&kerno_, key::kMonsterMob, &misc.chkMonsterMob},
          {&kerno_, key::kSummonMonsterMob, &misc.chkSummonMonsterMob},
          {&kerno_, key::kSummonMonsterName, &misc.chkSummonMonsterName},
          {&kerno_, key::kSummonMonsterAgo, &misc.chkSummonMonsterAgo},
          {&kerno_, key::kSummonMonsterExp, &misc.chkSummonMonsterExp},
          {&kerno_, key::kDropMultiplier, &experiences.txtItemDrop},
          {&kerno_, key::kGlobalMessage, &misc.txtGlobalMessage},
          {&kerno_, key::kMapMessage, &misc.txtMapMessage},
          // The zone server reads its own priority, so that one lives in its file.
          {&kerno_, key::kZonePriority, &priority.cboZonePrioritySettings},
          {&kTools_, settings::key::kLoginPriority, &priority.cboLoginPrioritySettings},
          {&kTools_, settings::key::kCharacterPriority, &priority.cboCharacterPrioritySettings},
          {&kerno_, Databases()[0].userKey, &database.txtLoginName},
          {&kerno_, Databases()[0].passwordKey, &database.txtLoginPassword},
          {&kerno_, Databases()[1].userKey, &database.txtCharacterName},
          {&kerno_, Databases()[1].passwordKey, &database.txtCharacterPassword},
          {&kerno_, Databases()[2].userKey, &database.txtGlobalName},
          {&kerno_, Databases()[2].passwordKey, &database.txtGlobalPassword},
      } {}

void frmServerSettings::Form_Load() {
    kTools_.INIPath(settings::kToolsIniPath());
    const std::string kernoIni = settings::KernoIniPath(modServerControl::KernoPath());
    if (!common::FileExists(kernoIni)) {
        // Of no window here: this one is not seen yet, and the one that it was opened from should wait.
        gui::MsgBoxNow("Can't find 'Kerno.ini' in current directory. The server configurator will now close");
        Unload();
        return;
    }
    kerno_.INIPath(kernoIni);
    LoadSettings();
}

void frmServerSettings::LoadSettings() {
    std::vector<std::string> texts;
    for (const config::SettingRow& row : rows_)
        texts.push_back(row.file->INIProperty(row.key));
    // Only now, as a file that fails half-way would leave a mixture that the next Save writes.
    for (std::size_t i = 0; i < rows_.size(); ++i)
        config::ShowSetting(rows_[i].control, texts[i]);
    priority.ShowCurrentPriorities();
}

void frmServerSettings::SaveSettings() {
    for (const config::SettingRow& row : rows_)
        row.file->INIProperty(row.key, config::SettingText(row.control));
}

void frmServerSettings::cmdSaveSettings_Click() {
    SaveSettings();
    MsgBoxNow("Server settings saved", MB_OK, kApplicationTitle);
    for (const modServerControl::Server server : modServerControl::kServers) {
        // A shutdown lets the user go on meanwhile, closing this window included; the restart that was asked
        // for is finished all the same, but nothing more is asked.
        if (!Loaded())
            return;
        if (!modServerControl::IsRunning(server) ||
            MsgBoxNow(modServerControl::RestartQuestion(server), MB_YESNO, kApplicationTitle) != IDYES)
            continue;
        modServerControl::Shutdown(server);
        modServerControl::StartWithPriority(server, kTools_);
    }
}
