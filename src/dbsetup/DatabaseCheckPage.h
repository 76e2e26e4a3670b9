#pragma once

#include "dbsetup/DatabaseCheckPage.ids.h"
#include "dbsetup/SetUpServer.h"
#include "gui/TabPanel.h"
#include "gui/Text.h"

/// Takes the login of MySQL's administrator, which the later steps use too, and shows which of the databases
/// and their tables exist.
class DatabaseCheckPage final : public gui::TabPage {
public:
    DatabaseCheckPage(gui::TabPanel& panel, dbsetup::SetUpServer& server)
        : TabPage(panel, IDD_DatabaseCheckPage), server_(server) {}

    gui::TextBox txtRootHostname{*this, IDC_DatabaseCheckPage_txtRootHostname};
    gui::TextBox txtRootUsername{*this, IDC_DatabaseCheckPage_txtRootUsername};
    gui::TextBox txtRootPassword{*this, IDC_DatabaseCheckPage_txtRootPassword};
    gui::CommandButton cmdCheckDB{*this, IDC_DatabaseCheckPage_cmdCheckDB,
                                  &DatabaseCheckPage::cmdCheckDB_Click};
    gui::Frame fraDatabases{*this, IDC_DatabaseCheckPage_fraDatabases};
    gui::Label lblGlogin{*this, IDC_DatabaseCheckPage_lblGlogin};
    gui::Label lblGloginTables{*this, IDC_DatabaseCheckPage_lblGloginTables};
    gui::Label lblAMCharacter{*this, IDC_DatabaseCheckPage_lblAMCharacter};
    gui::Label lblAMCharacterTables{*this, IDC_DatabaseCheckPage_lblAMCharacterTables};
    gui::Label lblAMGlobal{*this, IDC_DatabaseCheckPage_lblAMGlobal};
    gui::Label lblAMGlobalTables{*this, IDC_DatabaseCheckPage_lblAMGlobalTables};

    /// What is typed into the three boxes.
    dbsetup::AdministratorLogin Administrator() const;

private:
    void Form_Load() override;
    void cmdCheckDB_Click();

    dbsetup::SetUpServer& server_;
};
