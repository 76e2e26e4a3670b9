#pragma once

#include "config/DatabasePage.ids.h"
#include "gui/TabPanel.h"
#include "gui/Text.h"

/// The names and passwords by which the servers log in to their databases.
class DatabasePage final : public gui::TabPage {
public:
    explicit DatabasePage(gui::TabPanel& panel);

    gui::TextBox txtLoginName{*this, IDC_DatabasePage_txtLoginName};
    gui::TextBox txtLoginPassword{*this, IDC_DatabasePage_txtLoginPassword};
    gui::TextBox txtCharacterName{*this, IDC_DatabasePage_txtCharacterName};
    gui::TextBox txtCharacterPassword{*this, IDC_DatabasePage_txtCharacterPassword};
    gui::TextBox txtGlobalName{*this, IDC_DatabasePage_txtGlobalName};
    gui::TextBox txtGlobalPassword{*this, IDC_DatabasePage_txtGlobalPassword};
};
