#pragma once

#include "config/ExperiencesPage.ids.h"
#include "gui/TabPanel.h"
#include "gui/Text.h"

/// How fast players gain and lose experience, and what monsters drop.
class ExperiencesPage final : public gui::TabPage {
public:
    explicit ExperiencesPage(gui::TabPanel& panel);

    gui::TextBox txtBaseXPMultiplier{*this, IDC_ExperiencesPage_txtBaseXPMultiplier};
    gui::TextBox txtJobXPMultiplier{*this, IDC_ExperiencesPage_txtJobXPMultiplier};
    gui::TextBox txtBaseXPLoss{*this, IDC_ExperiencesPage_txtBaseXPLoss};
    gui::TextBox txtJobXPLoss{*this, IDC_ExperiencesPage_txtJobXPLoss};
    gui::TextBox txtItemDrop{*this, IDC_ExperiencesPage_txtItemDrop};
};
