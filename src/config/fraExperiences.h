#pragma once

#include "config/fraExperiences.ids.h"
#include "gui/TabPanel.h"
#include "gui/Text.h"

/// How fast players gain and lose experience, and what monsters drop.
class fraExperiences final : public gui::TabPage {
public:
    explicit fraExperiences(gui::TabPanel& panel) : TabPage(panel, IDD_fraExperiences) {}

    gui::TextBox txtBaseXPMultiplier{*this, IDC_fraExperiences_txtBaseXPMultiplier};
    gui::TextBox txtJobXPMultiplier{*this, IDC_fraExperiences_txtJobXPMultiplier};
    gui::TextBox txtBaseXPLoss{*this, IDC_fraExperiences_txtBaseXPLoss};
    gui::TextBox txtJobXPLoss{*this, IDC_fraExperiences_txtJobXPLoss};
    gui::TextBox txtItemDrop{*this, IDC_fraExperiences_txtItemDrop};
};
