#pragma once

#include "config/fraPriority.ids.h"
#include "gui/Lists.h"
#include "gui/TabPanel.h"
#include "gui/Timer.h"
#include "servers/Servers.h"

#include <array>
#include <optional>

/// The process priorities: the stored ones, and those that the running servers have at present. The indexes
/// of all six lists are priority indexes.
class fraPriority final : public gui::TabPage {
public:
    explicit fraPriority(gui::TabPanel& panel) : TabPage(panel, IDD_fraPriority) {}

    gui::ComboBox cboLoginPrioritySettings{*this, IDC_fraPriority_cboLoginPrioritySettings};
    gui::ComboBox cboCharacterPrioritySettings{*this, IDC_fraPriority_cboCharacterPrioritySettings};
    gui::ComboBox cboZonePrioritySettings{*this, IDC_fraPriority_cboZonePrioritySettings};
    gui::ComboBox cboLoginPriority{*this, IDC_fraPriority_cboLoginPriority};
    gui::ComboBox cboCharacterPriority{*this, IDC_fraPriority_cboCharacterPriority};
    gui::ComboBox cboZonePriority{*this, IDC_fraPriority_cboZonePriority,
                                  &fraPriority::cboZonePriority_KeyPress};
    gui::Label lblNotRunning1{*this, IDC_fraPriority_lblNotRunning1};
    gui::Label lblNotRunning2{*this, IDC_fraPriority_lblNotRunning2};
    gui::Label lblNotRunning3{*this, IDC_fraPriority_lblNotRunning3};
    gui::CommandButton cmdApplyPriorityChanges{*this, IDC_fraPriority_cmdApplyPriorityChanges,
                                               &fraPriority::cmdApplyPriorityChanges_Click};

    gui::Timer tmrFollow{*this, std::chrono::seconds(1), &fraPriority::tmrFollow_Timer};

    /// Shows what the running servers have; a server that does not run has no list.
    void ShowCurrentPriorities();

private:
    struct Current {
        modServerControl::Server server;
        gui::ComboBox& list;
        gui::Label& notRunning;
        /// What was seen of the server last: its priority, nothing when it does not run.
        std::optional<int> seen{};
    };

    void Form_Load() override;
    void cboZonePriority_KeyPress(int& key);
    void cmdApplyPriorityChanges_Click();
    void tmrFollow_Timer();

    static std::optional<int> PriorityOf(const Current& current);
    static void Show(Current& current, std::optional<int> priority);

    std::array<Current, 3> current_{
        {{modServerControl::Server::Login, cboLoginPriority, lblNotRunning1},
         {modServerControl::Server::Character, cboCharacterPriority, lblNotRunning2},
         {modServerControl::Server::Zone, cboZonePriority, lblNotRunning3}}};
};
