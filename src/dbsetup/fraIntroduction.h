#pragma once

#include "dbsetup/fraIntroduction.ids.h"
#include "gui/TabPanel.h"

/// Tells what the set-up wizard is going to do.
class fraIntroduction final : public gui::TabPage {
public:
    explicit fraIntroduction(gui::TabPanel& panel) : TabPage(panel, IDD_fraIntroduction) {}
};
