#pragma once

#include "config/MiscPage.ids.h"
#include "gui/Control.h"
#include "gui/TabPanel.h"
#include "gui/Text.h"

/// The servers' switches and the messages to all players.
class MiscPage final : public gui::TabPage {
public:
    explicit MiscPage(gui::TabPanel& panel);

    gui::CheckBox chkAutoStart{*this, IDC_MiscPage_chkAutoStart};
    gui::CheckBox chkWarpDebug{*this, IDC_MiscPage_chkWarpDebug};
    gui::CheckBox chkDisableEquipLimit{*this, IDC_MiscPage_chkDisableEquipLimit};
    gui::CheckBox chkDisableSkillLimit{*this, IDC_MiscPage_chkDisableSkillLimit};
    /// Shown for completeness: the servers have no setting that it could stand for.
    gui::CheckBox chkDisableLevelLimit{*this, IDC_MiscPage_chkDisableLevelLimit};
    gui::CheckBox chkDisableFleedown{*this, IDC_MiscPage_chkDisableFleedown};
    gui::CheckBox chkEnableMonsterKnockback{*this, IDC_MiscPage_chkEnableMonsterKnockback};
    gui::CheckBox chkDisableMonsterActive{*this, IDC_MiscPage_chkDisableMonsterActive};
    gui::CheckBox chkMonsterMob{*this, IDC_MiscPage_chkMonsterMob};
    gui::CheckBox chkSummonMonsterMob{*this, IDC_MiscPage_chkSummonMonsterMob};
    gui::CheckBox chkSummonMonsterName{*this, IDC_MiscPage_chkSummonMonsterName};
    gui::CheckBox chkSummonMonsterAgo{*this, IDC_MiscPage_chkSummonMonsterAgo};
    gui::CheckBox chkSummonMonsterExp{*this, IDC_MiscPage_chkSummonMonsterExp};
    gui::TextBox txtGlobalMessage{*this, IDC_MiscPage_txtGlobalMessage};
    gui::TextBox txtMapMessage{*this, IDC_MiscPage_txtMapMessage};
};
