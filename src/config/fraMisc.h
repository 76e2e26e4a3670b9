#pragma once

#include "config/fraMisc.ids.h"
#include "gui/Control.h"
#include "gui/TabPanel.h"
#include "gui/Text.h"

/// The servers' switches and the messages to all players.
class fraMisc final : public gui::TabPage {
public:
    explicit fraMisc(gui::TabPanel& panel) : TabPage(panel, IDD_fraMisc) {}

    gui::CheckBox chkAutoStart{*this, IDC_fraMisc_chkAutoStart};
    gui::CheckBox chkWarpDebug{*this, IDC_fraMisc_chkWarpDebug};
    gui::CheckBox chkDisableEquipLimit{*this, IDC_fraMisc_chkDisableEquipLimit};
    gui::CheckBox chkDisableSkillLimit{*this, IDC_fraMisc_chkDisableSkillLimit};
    /// Shown for completeness: the servers have no setting that it could stand for.
    gui::CheckBox chkDisableLevelLimit{*this, IDC_fraMisc_chkDisableLevelLimit};
    gui::CheckBox chkDisableFleedown{*this, IDC_fraMisc_chkDisableFleedown};
    gui::CheckBox chkEnableMonsterKnockback{*this, IDC_fraMisc_chkEnableMonsterKnockback};
    gui::CheckBox chkDisableMonsterActive{*this, IDC_fraMisc_chkDisableMonsterActive};
    gui::CheckBox chkMonsterMob{*this, IDC_fraMisc_chkMonsterMob};
    gui::CheckBox chkSummonMonsterMob{*this, IDC_fraMisc_chkSummonMonsterMob};
    gui::CheckBox chkSummonMonsterName{*this, IDC_fraMisc_chkSummonMonsterName};
    gui::CheckBox chkSummonMonsterAgo{*this, IDC_fraMisc_chkSummonMonsterAgo};
    gui::CheckBox chkSummonMonsterExp{*this, IDC_fraMisc_chkSummonMonsterExp};
    gui::TextBox txtGlobalMessage{*this, IDC_fraMisc_txtGlobalMessage};
    gui::TextBox txtMapMessage{*this, IDC_fraMisc_txtMapMessage};
};
