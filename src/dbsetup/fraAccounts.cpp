#include "dbsetup/fraAccounts.h"

#include "dbsetup/ServerLogins.h"
#include "dbsetup/SetUpMessages.h"
#include "gui/WaitCursor.h"
#include "servers/modServerControl.h"
#include "settings/kToolsSettings.h"

#include <vector>

void fraAccounts::Form_Load() {
    kerno_.INIPath(settings::KernoIniPath(modServerControl::KernoPath()));
    for (std::size_t i = 0; i < std::size(boxes_); ++i) {
        const auto login = suite::ReadLogin(kerno_, suite::Databases()[i]);
        boxes_[i].user.Text(login.user);
        boxes_[i].password.Text(login.password);
    }
}

void fraAccounts::cmdSetupAccounts_Click() {
    {
        const gui::WaitCursor waiting;
        std::vector<dbsetup::ServerLogin> logins;
        for (std::size_t i = 0; i < std::size(boxes_); ++i)
            logins.push_back({suite::Databases()[i], {boxes_[i].user.Text(), boxes_[i].password.Text()}});
        server_.LogIn();
        for (const auto& login : logins)
            dbsetup::Grant(server_, login);
        // Only when all three are good: the servers must not be told of a login that does not work.
        for (const auto& login : logins)
            dbsetup::WriteLogin(kerno_, login);
    }
    MsgBoxNow("Kerno SQL accounts setup successful", MB_ICONINFORMATION, dbsetup::kTitle);
}
