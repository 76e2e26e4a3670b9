#pragma once

#include "database/Error.h"
#include "dbsetup/RepairPage.ids.h"
#include "dbsetup/SetUpServer.h"
#include "gui/TabPanel.h"

/// Makes what is missing of the databases, or deletes them.
class RepairPage final : public gui::TabPage {
public:
    RepairPage(gui::TabPanel& panel, dbsetup::SetUpServer& server)
        : TabPage(panel, IDD_RepairPage), server_(server) {}

    gui::CommandButton cmdRepairDatabase{*this, IDC_RepairPage_cmdRepairDatabase,
                                         &RepairPage::cmdRepairDatabase_Click};
    gui::CommandButton cmdDeleteDatabase{*this, IDC_RepairPage_cmdDeleteDatabase,
                                         &RepairPage::cmdDeleteDatabase_Click};

private:
    void cmdRepairDatabase_Click();
    void cmdDeleteDatabase_Click();
    bool AllowEngineForm(const database::Error& rejection);

    dbsetup::SetUpServer& server_;
};
