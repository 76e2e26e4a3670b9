#pragma once

#include "dbsetup/fraFinish.ids.h"
#include "gui/TabPanel.h"

/// The end of the set-up wizard, and where to go from there.
class fraFinish final : public gui::TabPage {
public:
    explicit fraFinish(gui::TabPanel& panel) : TabPage(panel, IDD_fraFinish) {}
};
