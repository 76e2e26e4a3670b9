#pragma once

#include "Faults.h"

#include "dbsetup/Schema.h"
#include "supervision/frmServerControl.h"
#include "support/Database.h"
#include "support/Network.h"

/// A control panel over the ten tables, with both generations on the backup server, which is reached through
/// a network that can be cut.
class BackedUp : public Faults, protected support::Databases {
protected:
    static constexpr const char* kNetwork = "127.0.0.3";

    BackedUp() {
        using namespace settings::key;
        for (const auto& database : suite::Databases()) {
            root.Execute(dbsetup::CreateStatement(database));
            for (const auto& table : database.tables)
                root.Execute(dbsetup::EngineForm(dbsetup::CreateStatement(table)));
        }
        support::MakeLogin(root, "suite@localhost", "secret");
        support::MakeLogin(remote, "suite@'%'", "secret");
        Set({{kBackupHostname, kNetwork},
             {kBackupUsername, "suite"},
             {kBackupPassword, "secret"},
             {kBackupSecondGeneration, "1"}});
        for (const auto& database : suite::Databases()) {
            kerno.INIProperty(database.userKey, "suite");
            kerno.INIProperty(database.passwordKey, "secret");
        }
    }

    support::Proxy network{kNetwork, support::kRemoteServer};
    support::MessageBoxes boxes;
    gui::Local<frmServerControl> held;
    frmServerControl& panel = *held;
};
