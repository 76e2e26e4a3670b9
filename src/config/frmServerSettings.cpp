#include "config/frmServerSettings.h"

#include "common/Files.h"
#include "gui/MsgBox.h"
#include "servers/modServerControl.h"
#include "settings/kToolsSettings.h"

using gui::kApplicationTitle;

// Settings are read and written in this order; ones that a file lacks come to stand in it behind each other.
frmServerSettings::frmServerSettings()
    : Form(IDD_frmServerSettings),
      rows_{
          {&kerno_, "Name", &connections.txtServerName},
          {&kerno_, "IP", &connections.txtServerIP},
          {&kerno_, "sv1port", &connections.txtLoginPort},
          {&kerno_, "sv2port", &connections.txtCharaPort},
          {&kerno_, "sv3port", &connections.txtGamePort},
          {&kerno_, "BaseExpMultiplier", &experiences.txtBaseXPMultiplier},
          {&kerno_, "JobExpMultiplier", &experiences.txtJobXPMultiplier},
          {&kerno_, "DeathBaseLoss", &experiences.txtBaseXPLoss},
          {&kerno_, "DeathJobLoss", &experiences.txtJobXPLoss},
          {&kerno_, "DefaultMap", &newPlayer.txtMapName},
          {&kerno_, "DefaultPoint_X", &newPlayer.txtStartingX},
          {&kerno_, "DefaultPoint_Y", &newPlayer.txtStartingY},
          {&kerno_, "DefaultZeny", &newPlayer.txtStartingZeny},
          {&kerno_, "AutoStart", &misc.chkAutoStart},
          {&kerno_, "WarpDebug", &misc.chkWarpDebug},
          {&kerno_, "EnableMonsterKnockBack", &misc.chkEnableMonsterKnockback},
          {&kerno_, "DisableMonsterActive", &misc.chkDisableMonsterActive},
          {&kerno_, "DisableEquipLimit", &misc.chkDisableEquipLimit},
          {&kerno_, "DisableSkillLimit", &misc.chkDisableSkillLimit},
          {&kerno_, "DisableFleeDown", &misc.chkDisableFleedown},
          {&kerno_, "MonsterMob", &misc.chkMonsterMob},
          {&kerno_, "SummonMonsterMob", &misc.chkSummonMonsterMob},
          {&kerno_, "SummonMonsterName", &misc.chkSummonMonsterName},
          {&kerno_, "SummonMonsterAgo", &misc.chkSummonMonsterAgo},
          {&kerno_, "SummonMonsterExp", &misc.chkSummonMonsterExp},
          {&kerno_, "DropMultiplier", &experiences.txtItemDrop},
          {&kerno_, "GlobalGMsg", &misc.txtGlobalMessage},
          {&kerno_, "MapGMsg", &misc.txtMapMessage},
          // The zone server reads its own priority, so that one lives in its file.
          {&kerno_, "Priority", &priority.cboZonePrioritySettings},
          {&kTools_, settings::key::kLoginPriority, &priority.cboLoginPrioritySettings},
          {&kTools_, settings::key::kCharacterPriority, &priority.cboCharacterPrioritySettings},
          {&kerno_, "gloginname", &database.txtLoginName},
          {&kerno_, "gloginpass", &database.txtLoginPassword},
          {&kerno_, "amcharactername", &database.txtCharacterName},
          {&kerno_, "amcharacterpass", &database.txtCharacterPassword},
          {&kerno_, "amglobalname", &database.txtGlobalName},
          {&kerno_, "amglobalpass", &database.txtGlobalPassword},
      } {}

void frmServerSettings::Form_Load() {
    kTools_.INIPath(settings::kToolsIniPath());
    const std::string kernoIni = settings::KernoIniPath(modServerControl::KernoPath());
    if (!common::FileExists(kernoIni)) {
        // Of no window here: this one is not seen yet, and the one that it was opened from should wait.
        gui::MsgBox("Can't find 'Kerno.ini' in current directory. The server configurator will now close");
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
    MsgBox("Server settings saved", MB_OK, kApplicationTitle);
    for (const modServerControl::Server server : modServerControl::kServers) {
        // A shutdown lets the user go on meanwhile, closing this window included; the restart that was asked
        // for is finished all the same, but nothing more is asked.
        if (!Loaded())
            return;
        if (!modServerControl::IsRunning(server) ||
            MsgBox(modServerControl::RestartQuestion(server), MB_YESNO, kApplicationTitle) != IDYES)
            continue;
        modServerControl::Shutdown(server);
        modServerControl::StartWithPriority(server, kTools_);
    }
}
