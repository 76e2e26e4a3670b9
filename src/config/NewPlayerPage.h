#pragma once

#include "config/NewPlayerPage.ids.h"
#include "gui/TabPanel.h"
#include "gui/Text.h"

/// Where new players start, and with how much money.
class NewPlayerPage final : public gui::TabPage {
public:
    explicit NewPlayerPage(gui::TabPanel& panel) : TabPage(panel, IDD_NewPlayerPage) {}

    gui::TextBox txtMapName{*this, IDC_NewPlayerPage_txtMapName};
    gui::TextBox txtStartingX{*this, IDC_NewPlayerPage_txtStartingX};
    gui::TextBox txtStartingY{*this, IDC_NewPlayerPage_txtStartingY};
    gui::TextBox txtStartingZeny{*this, IDC_NewPlayerPage_txtStartingZeny};
    gui::CommandButton cmdMapPicker{*this, IDC_NewPlayerPage_cmdMapPicker,
                                    &NewPlayerPage::cmdMapPicker_Click};

private:
    gui::Task<> cmdMapPicker_Click();
};
