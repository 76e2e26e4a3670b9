#pragma once

#include "SamplePage.ids.h"

#include "gui/TabPanel.h"
#include "gui/Text.h"

/// A page of the sample form.
class SamplePage final : public gui::TabPage {
public:
    explicit SamplePage(gui::TabPanel& panel) : TabPage(panel, IDD_SamplePage) {}

    gui::TextBox txtFirst{*this, IDC_SamplePage_txtFirst};
    gui::CommandButton cmdSecond{*this, IDC_SamplePage_cmdSecond};
};
