#pragma once

#include "dbsetup/FinishPage.ids.h"
#include "gui/TabPanel.h"

/// The end of the set-up wizard, and where to go from there.
class FinishPage final : public gui::TabPage {
public:
    explicit FinishPage(gui::TabPanel& panel) : TabPage(panel, IDD_FinishPage) {}
};
