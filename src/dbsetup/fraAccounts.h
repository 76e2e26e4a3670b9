#pragma once

#include "dbsetup/fraAccounts.ids.h"
#include "dbsetup/ServerLogins.h"
#include "gui/TabPanel.h"
#include "gui/Text.h"
#include "settings/clsINI.h"

/// Makes the logins that the servers use, one for each database, and stores them in Kerno.ini.
class fraAccounts final : public gui::TabPage {
public:
    fraAccounts(gui::TabPanel& panel, dbsetup::SetUpServer& server)
        : TabPage(panel, IDD_fraAccounts), server_(server) {}

    gui::Frame fraGLogin{*this, IDC_fraAccounts_fraGLogin};
    gui::TextBox txtGloginUsername{*this, IDC_fraAccounts_txtGloginUsername};
    gui::TextBox txtGloginPassword{*this, IDC_fraAccounts_txtGloginPassword};
    gui::Frame fraAMCharacter{*this, IDC_fraAccounts_fraAMCharacter};
    gui::TextBox txtAMCharacterUsername{*this, IDC_fraAccounts_txtAMCharacterUsername};
    gui::TextBox txtAMCharacterPassword{*this, IDC_fraAccounts_txtAMCharacterPassword};
    gui::Frame fraAMGlobal{*this, IDC_fraAccounts_fraAMGlobal};
    gui::TextBox txtAMGlobalUsername{*this, IDC_fraAccounts_txtAMGlobalUsername};
    gui::TextBox txtAMGlobalPassword{*this, IDC_fraAccounts_txtAMGlobalPassword};
    gui::CommandButton cmdSetupAccounts{*this, IDC_fraAccounts_cmdSetupAccounts,
                                        &fraAccounts::cmdSetupAccounts_Click};
    gui::CommandButton cmdCheckAccounts{*this, IDC_fraAccounts_cmdCheckAccounts,
                                        &fraAccounts::cmdCheckAccounts_Click};
    gui::CommandButton cmdSuggestPasswords{*this, IDC_fraAccounts_cmdSuggestPasswords,
                                           &fraAccounts::cmdSuggestPasswords_Click};
    gui::CheckBox chkShowPasswords{*this, IDC_fraAccounts_chkShowPasswords,
                                   &fraAccounts::chkShowPasswords_Click};
    /// What the check of the accounts has found, a line for each.
    gui::TextBox txtAccountCheck{*this, IDC_fraAccounts_txtAccountCheck};

private:
    struct LoginBoxes {
        gui::TextBox& user;
        gui::TextBox& password;
    };

    void Form_Load() override;
    gui::Task<> cmdSetupAccounts_Click();
    gui::Task<> cmdCheckAccounts_Click();
    void cmdSuggestPasswords_Click();
    void chkShowPasswords_Click();
    std::vector<dbsetup::ServerLogin> Typed() const;
    /// False when the way of servers of today was declined.
    gui::Task<bool> MakeLogins(std::vector<dbsetup::ServerLogin> logins);
    gui::Task<bool> CreateLogins(std::vector<dbsetup::ServerLogin> logins, std::string plugin);

    dbsetup::SetUpServer& server_;
    clsINI kerno_;
    /// In the order of the databases.
    const LoginBoxes boxes_[3] = {{txtGloginUsername, txtGloginPassword},
                                  {txtAMCharacterUsername, txtAMCharacterPassword},
                                  {txtAMGlobalUsername, txtAMGlobalPassword}};
};
