#pragma once

#include "dbsetup/AccountsPage.ids.h"
#include "dbsetup/SetUpServer.h"
#include "gui/TabPanel.h"
#include "gui/Text.h"
#include "settings/clsINI.h"

/// Makes the logins that the servers use, one for each database, and stores them in Kerno.ini.
class AccountsPage final : public gui::TabPage {
public:
    AccountsPage(gui::TabPanel& panel, dbsetup::SetUpServer& server)
        : TabPage(panel, IDD_AccountsPage), server_(server) {}

    gui::Frame fraGLogin{*this, IDC_AccountsPage_fraGLogin};
    gui::TextBox txtGloginUsername{*this, IDC_AccountsPage_txtGloginUsername};
    gui::TextBox txtGloginPassword{*this, IDC_AccountsPage_txtGloginPassword};
    gui::Frame fraAMCharacter{*this, IDC_AccountsPage_fraAMCharacter};
    gui::TextBox txtAMCharacterUsername{*this, IDC_AccountsPage_txtAMCharacterUsername};
    gui::TextBox txtAMCharacterPassword{*this, IDC_AccountsPage_txtAMCharacterPassword};
    gui::Frame fraAMGlobal{*this, IDC_AccountsPage_fraAMGlobal};
    gui::TextBox txtAMGlobalUsername{*this, IDC_AccountsPage_txtAMGlobalUsername};
    gui::TextBox txtAMGlobalPassword{*this, IDC_AccountsPage_txtAMGlobalPassword};
    gui::CommandButton cmdSetupAccounts{*this, IDC_AccountsPage_cmdSetupAccounts,
                                        &AccountsPage::cmdSetupAccounts_Click};

private:
    struct LoginBoxes {
        gui::TextBox& user;
        gui::TextBox& password;
    };

    void Form_Load() override;
    void cmdSetupAccounts_Click();

    dbsetup::SetUpServer& server_;
    clsINI kerno_;
    /// In the order of the databases.
    const LoginBoxes boxes_[3] = {{txtGloginUsername, txtGloginPassword},
                                  {txtAMCharacterUsername, txtAMCharacterPassword},
                                  {txtAMGlobalUsername, txtAMGlobalPassword}};
};
