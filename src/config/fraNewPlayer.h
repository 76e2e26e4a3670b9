#pragma once

#include "config/fraNewPlayer.ids.h"
#include "gui/TabPanel.h"
#include "gui/Text.h"

/// Where new players start, and with how much money.
class fraNewPlayer final : public gui::TabPage {
public:
    explicit fraNewPlayer(gui::TabPanel& panel) : TabPage(panel, IDD_fraNewPlayer) {}

    gui::TextBox txtMapName{*this, IDC_fraNewPlayer_txtMapName};
    gui::TextBox txtStartingX{*this, IDC_fraNewPlayer_txtStartingX};
    gui::TextBox txtStartingY{*this, IDC_fraNewPlayer_txtStartingY};
    gui::TextBox txtStartingZeny{*this, IDC_fraNewPlayer_txtStartingZeny};
    gui::CommandButton cmdMapPicker{*this, IDC_fraNewPlayer_cmdMapPicker, &fraNewPlayer::cmdMapPicker_Click};

private:
    gui::Task<> cmdMapPicker_Click();
};
