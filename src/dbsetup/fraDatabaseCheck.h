#pragma once

#include "dbsetup/fraDatabaseCheck.ids.h"
#include "dbsetup/SetUpServer.h"
#include "gui/TabPanel.h"
#include "gui/Text.h"

/// Takes the login of MySQL's administrator, which the later steps use too, and shows which of the databases
/// and their tables exist.
class fraDatabaseCheck final : public gui::TabPage {
public:
    fraDatabaseCheck(gui::TabPanel& panel, dbsetup::SetUpServer& server)
        : TabPage(panel, IDD_fraDatabaseCheck), server_(server) {}

    gui::TextBox txtRootHostname{*this, IDC_fraDatabaseCheck_txtRootHostname};
    gui::TextBox txtRootUsername{*this, IDC_fraDatabaseCheck_txtRootUsername};
    gui::TextBox txtRootPassword{*this, IDC_fraDatabaseCheck_txtRootPassword};
    gui::CommandButton cmdCheckDB{*this, IDC_fraDatabaseCheck_cmdCheckDB,
                                  &fraDatabaseCheck::cmdCheckDB_Click};
    gui::Frame fraDatabases{*this, IDC_fraDatabaseCheck_fraDatabases};
    gui::Label lblGlogin{*this, IDC_fraDatabaseCheck_lblGlogin};
    gui::Label lblGloginTables{*this, IDC_fraDatabaseCheck_lblGloginTables};
    gui::Label lblAMCharacter{*this, IDC_fraDatabaseCheck_lblAMCharacter};
    gui::Label lblAMCharacterTables{*this, IDC_fraDatabaseCheck_lblAMCharacterTables};
    gui::Label lblAMGlobal{*this, IDC_fraDatabaseCheck_lblAMGlobal};
    gui::Label lblAMGlobalTables{*this, IDC_fraDatabaseCheck_lblAMGlobalTables};

    /// What the server is and takes, to copy.
    gui::TextBox txtServerCard{*this, IDC_fraDatabaseCheck_txtServerCard};

    /// Told what is in the databases when they have been checked.
    std::function<void(const std::string& contents)> Counted;

    /// What is typed into the three boxes.
    dbsetup::AdministratorLogin Administrator() const;

private:
    void Form_Load() override;
    gui::Task<> cmdCheckDB_Click();

    dbsetup::SetUpServer& server_;
};
