#pragma once

#include "database/Error.h"
#include "dbsetup/fraRepair.ids.h"
#include "dbsetup/SetUpServer.h"
#include "gui/TabPanel.h"
#include "gui/Waiting.h"

/// Makes what is missing of the databases, or deletes them.
class fraRepair final : public gui::TabPage {
public:
    fraRepair(gui::TabPanel& panel, dbsetup::SetUpServer& server)
        : TabPage(panel, IDD_fraRepair), server_(server) {}

    gui::CommandButton cmdRepairDatabase{*this, IDC_fraRepair_cmdRepairDatabase,
                                         &fraRepair::cmdRepairDatabase_Click};
    gui::CommandButton cmdDeleteDatabase{*this, IDC_fraRepair_cmdDeleteDatabase,
                                         &fraRepair::cmdDeleteDatabase_Click};

    gui::Label lblLosses{*this, IDC_fraRepair_lblLosses};

    /// Tells beside the button what is in the databases, "" when nobody has looked.
    void Losses(const std::string& text);

private:
    void Form_Load() override { Losses({}); }
    gui::Task<> cmdRepairDatabase_Click();
    gui::Task<> cmdDeleteDatabase_Click();
    gui::Task<bool> AllowEngineForm(database::Error rejection, std::optional<gui::Waiting>& waiting);

    dbsetup::SetUpServer& server_;
};
