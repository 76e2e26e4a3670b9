#pragma once

#include "dbsetup/Schema.h"
#include "Panel.h"
#include "supervision/BackupArchive.h"
#include "support/Database.h"

using support::Rows;

/// A control panel over the ten tables on the real server, with a backup server beside it.
struct Backup : Panel, support::Databases {
    Backup() {
        modServerControl::MySQLPath(support::DataFolder() + "\\..\\");
        int number = 0;
        for (const auto& database : suite::Databases()) {
            root.Execute(dbsetup::CreateStatement(database));
            for (const auto& table : database.tables) {
                root.Execute(dbsetup::EngineForm(dbsetup::CreateStatement(table)));
                tables.push_back(std::string(database.name) + "." + std::string(table.name));
                // Every column takes a number.
                std::string values;
                for (std::size_t i = support::Rows(root, "SHOW COLUMNS FROM " + tables.back()).size(); i > 0;
                     --i)
                    values += (values.empty() ? "" : ",") + std::to_string(++number % 9);
                root.Execute("INSERT INTO " + tables.back() + " VALUES (" + values + ")");
            }
        }
        root.Execute("FLUSH TABLES;");
        support::MakeLogin(root, "suite@localhost", "se{}cret");
        support::MakeLogin(remote, "keeper@'%'", "pass;word");
        for (const std::string database : {"glogin", "amcharacter", "amglobal"}) {
            kerno.INIProperty(database + "name", "suite");
            kerno.INIProperty(database + "pass", "se{}cret");
        }
        Set({{settings::key::kBackupHostname, support::kRemoteServer},
             {settings::key::kBackupUsername, "keeper"},
             {settings::key::kBackupPassword, "pass;word"}});
        panel.Load();
        page.txtBackupMinutes.Text("60");
        page.txtBackupDuration.Text("2");
        page.txtNumOfBackup.Text("1");
        page.txtBackupMessageInterval.Text("2");
    }
    ~Backup() override { modServerControl::MySQLPath(""); }

    static std::vector<std::string> Sums(support::Client& connection, const std::string& prefix = {}) {
        std::vector<std::string> sums;
        for (const auto& database : suite::Databases())
            std::ranges::copy(support::Checksums(connection, prefix + std::string(database.name)),
                              std::back_inserter(sums));
        return sums;
    }
    static std::vector<std::string> Folders() {
        std::vector<std::string> names;
        if (std::filesystem::exists(supervision::BackupFolder()))
            for (const auto& entry : std::filesystem::directory_iterator(supervision::BackupFolder()))
                names.push_back(entry.path().filename().string());
        return names;
    }
    /// Ticks at the first second of a cycle and at that of its backup phase.
    void TickWhenDue() {
        page.clock.Reset();
        page.tmrBackup.Tick();
        page.clock.Count(3598);
        page.tmrBackup.Tick();
    }

    /// The same, and the backup is over.
    void BackUpByTheClock() {
        TickWhenDue();
        EXPECT_TRUE(support::Settle(std::chrono::minutes(3)));
    }

    /// MySQL since version 8 keeps no layout files: there a file backup ends with kNoLayout, and says why.
    const bool filesWork = !support::IsMySQL(root);
    static constexpr const char* kNoLayout = "53] File not found (2: ";
    static constexpr const char* kWhyNoLayout = "MySQL 8 and later keep no such file";

    support::MessageBoxes boxes;
    std::vector<std::string> tables;
    gui::Local<frmServerControl> held;
    frmServerControl& panel = *held;
    fraBackup& page = panel.backup;
};
