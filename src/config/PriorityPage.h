#pragma once

#include "config/PriorityPage.ids.h"
#include "gui/Lists.h"
#include "gui/TabPanel.h"
#include "servers/Servers.h"

#include <array>

/// The process priorities: the stored ones, and those that the running servers have at present. The indexes
/// of all six lists are priority indexes.
class PriorityPage final : public gui::TabPage {
public:
    explicit PriorityPage(gui::TabPanel& panel) : TabPage(panel, IDD_PriorityPage) {}

    gui::ComboBox cboLoginPrioritySettings{*this, IDC_PriorityPage_cboLoginPrioritySettings};
    gui::ComboBox cboCharacterPrioritySettings{*this, IDC_PriorityPage_cboCharacterPrioritySettings};
    gui::ComboBox cboZonePrioritySettings{*this, IDC_PriorityPage_cboZonePrioritySettings};
    gui::ComboBox cboLoginPriority{*this, IDC_PriorityPage_cboLoginPriority};
    gui::ComboBox cboCharacterPriority{*this, IDC_PriorityPage_cboCharacterPriority};
    gui::ComboBox cboZonePriority{*this, IDC_PriorityPage_cboZonePriority,
                                  &PriorityPage::cboZonePriority_KeyPress};
    gui::Label lblNotRunning1{*this, IDC_PriorityPage_lblNotRunning1};
    gui::Label lblNotRunning2{*this, IDC_PriorityPage_lblNotRunning2};
    gui::Label lblNotRunning3{*this, IDC_PriorityPage_lblNotRunning3};
    gui::CommandButton cmdApplyPriorityChanges{*this, IDC_PriorityPage_cmdApplyPriorityChanges,
                                               &PriorityPage::cmdApplyPriorityChanges_Click};

    /// Shows what the running servers have; a server that does not run has no list.
    void ShowCurrentPriorities();

private:
    struct Current {
        modServerControl::Server server;
        gui::ComboBox& list;
        gui::Label& notRunning;
    };

    void Form_Load() override;
    void cboZonePriority_KeyPress(int& key);
    void cmdApplyPriorityChanges_Click();

    std::array<Current, 3> current_{
        {{modServerControl::Server::Login, cboLoginPriority, lblNotRunning1},
         {modServerControl::Server::Character, cboCharacterPriority, lblNotRunning2},
         {modServerControl::Server::Zone, cboZonePriority, lblNotRunning3}}};
};
