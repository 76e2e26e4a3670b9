#pragma once

#include "dbsetup/IntroductionPage.ids.h"
#include "gui/TabPanel.h"

/// Tells what the set-up wizard is going to do.
class IntroductionPage final : public gui::TabPage {
public:
    explicit IntroductionPage(gui::TabPanel& panel) : TabPage(panel, IDD_IntroductionPage) {}
};
