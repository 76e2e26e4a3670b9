#pragma once

#include "config/fraDatabaseLogins.ids.h"
#include "gui/TabPanel.h"
#include "gui/Text.h"

/// The names and passwords by which the servers log in to their databases.
class fraDatabaseLogins final : public gui::TabPage {
public:
    explicit fraDatabaseLogins(gui::TabPanel& panel) : TabPage(panel, IDD_fraDatabaseLogins) {}

    gui::TextBox txtLoginName{*this, IDC_fraDatabaseLogins_txtLoginName};
    gui::TextBox txtLoginPassword{*this, IDC_fraDatabaseLogins_txtLoginPassword};
    gui::TextBox txtCharacterName{*this, IDC_fraDatabaseLogins_txtCharacterName};
    gui::TextBox txtCharacterPassword{*this, IDC_fraDatabaseLogins_txtCharacterPassword};
    gui::TextBox txtGlobalName{*this, IDC_fraDatabaseLogins_txtGlobalName};
    gui::TextBox txtGlobalPassword{*this, IDC_fraDatabaseLogins_txtGlobalPassword};
};
