#pragma once

#include "database/Error.h"
#include "dbsetup/fraRepair.ids.h"
#include "dbsetup/SetUpServer.h"
#include "gui/TabPanel.h"

/// Makes what is missing of the databases, or deletes them.
class fraRepair final : public gui::TabPage {
public:
    fraRepair(gui::TabPanel& panel, dbsetup::SetUpServer& server)
        : TabPage(panel, IDD_fraRepair), server_(server) {}

    gui::CommandButton cmdRepairDatabase{*this, IDC_fraRepair_cmdRepairDatabase,
                                         &fraRepair::cmdRepairDatabase_Click};
    gui::CommandButton cmdDeleteDatabase{*this, IDC_fraRepair_cmdDeleteDatabase,
                                         &fraRepair::cmdDeleteDatabase_Click};

private:
    void cmdRepairDatabase_Click();
    void cmdDeleteDatabase_Click();
    bool AllowEngineForm(const database::Error& rejection);

    dbsetup::SetUpServer& server_;
};
