#include "supervision/FileBackup.h"

#include "common/RuntimeError.h"
#include "database/Connection.h"
#include "database/Error.h"
#include "gui/TaskWaits.h"
#include "servers/Databases.h"
#include "servers/Servers.h"
#include "supervision/BackupArchive.h"
#include "supervision/BackupWork.h"
#include "supervision/TableCheck.h"
#include "supervision/TableCopy.h"

#include <algorithm>

namespace supervision {

namespace {

/// MySQL's own word on what is copied, one database after the other. Nothing that it does not answer keeps a
/// backup from being made.
class Witness {
public:
    Witness(clsINI kerno, std::string dataFolder, bool lock)
        : kerno_(std::move(kerno)), dataFolder_(std::move(dataFolder)), lock_(lock) {}

    /// Logs in for the database and locks its tables if that is wanted.
    gui::Task<> Begin(const suite::Database& database) {
        if (silent_)
            co_return;
        try {
            const suite::Login login = suite::ReadLogin(kerno_, database);
            co_await server_.Open(
                database::MySQLConnectionString(suite::kThisComputer, login.user, login.password));
            if (!std::exchange(asked_, true))
                co_await LookAtFolder();
        } catch (const database::Error& error) {
            // It is not asked three times for what it does not answer.
            silent_ = error.Unanswered();
            server_.Close();
        } catch (const RuntimeError&) {
            server_.Close();
        }
        if (lock_)
            co_await Lock(database);
    }

    /// Compares what it counts with the rows that a copied index file tells.
    gui::Task<> Compare(CopiedTable& table) {
        if (!server_.IsOpen() || table.verdict.verdict != Verdict::Proven)
            co_return;
        try {
            const database::Value count = co_await server_.Scalar("SELECT COUNT(*) FROM " + table.name);
            const std::string counted = count.AsText();
            if (counted != std::to_string(table.verdict.rows)) {
                table.verdict.verdict = Verdict::Changed;
                table.verdict.reason =
                    "MySQL counts " + counted + " rows, the copy has " + std::to_string(table.verdict.rows);
            }
        } catch (const RuntimeError&) {
            server_.Close();
        }
    }

    /// Ends the login, and the lock with it.
    void End() { server_.Close(); }

    const std::vector<std::string>& Warnings() const { return warnings_; }

private:
    gui::Task<> LookAtFolder() {
        const database::Value told = co_await server_.Scalar("SELECT @@datadir");
        const std::string folder = told.AsText();
        if (!AreSameFolder(dataFolder_, folder))
            warnings_.push_back("MySQL keeps its tables in " + folder + ", and those in " + dataFolder_ +
                                " were copied");
    }

    gui::Task<> Lock(const suite::Database& database) {
        std::string tables;
        for (const suite::Table& table : database.tables)
            tables += (tables.empty() ? "" : ", ") + std::string(database.name) + "." +
                      std::string(table.name) + " READ";
        try {
            // The limit is for servers that know no such setting.
            server_.Limit(std::chrono::seconds(12));
            auto lock = [tables](const database::SessionPtr& session) {
                ExecuteKnown(session, {"SET SESSION lock_wait_timeout = 10"});
                database::Execute(session, "LOCK TABLES " + tables);
            };
            co_await server_.Call(lock);
        } catch (const RuntimeError& error) {
            warnings_.push_back(std::string(database.name) +
                                " was not locked while it was copied: " + error.Description());
            // Whoever holds the tables would be waited for again by the counts.
            server_.Close();
        }
        server_.Limit(database::kStatementLimit);
    }

    clsINI kerno_;
    std::string dataFolder_;
    bool lock_;
    database::Connection server_;
    bool silent_ = false;
    bool asked_ = false;
    std::vector<std::string> warnings_;
};

gui::Task<TableVerdict> CopyTable(std::string source, std::string target, std::string table,
                                  std::function<void(const std::string&)> progress) {
    // Owned by the calls too: the last one goes on when the backup is ended.
    const auto copy = std::make_shared<TableCopy>(source, target, table);
    for (bool more = true; more;) {
        progress(copy->File());
        auto step = [copy] { return copy->Step(); };
        more = co_await gui::Aside(step);
        co_await gui::NextTurn();
    }
    co_return copy->Verdict();
}

} // namespace

bool FileBackup::IsProven() const {
    return warnings.empty() && std::ranges::all_of(tables, [](const CopiedTable& table) {
               return table.verdict.verdict == Verdict::Proven;
           });
}

gui::Task<FileBackup> BackUpFiles(std::function<void(const std::string&)> progress, clsINI kerno, bool lock) {
    SYSTEMTIME now{};
    GetLocalTime(&now);
    BackupWork work;
    const std::string gathered = work.Gather();
    for (const suite::Database& database : suite::Databases())
        common::MakeFolder(gathered + "\\" + std::string(database.name));
    const std::string data = MySQLDataFolder();
    Witness witness(kerno, data, lock);
    FileBackup backup{BackupName(now), {}, {}};
    for (const suite::Database& database : suite::Databases()) {
        const std::string name(database.name);
        co_await witness.Begin(database);
        for (const std::size_t position : database.copyOrder) {
            const std::string table(database.tables[position].name);
            CopiedTable copied{name + "." + table, {}};
            copied.verdict = co_await CopyTable(data + "\\" + name, gathered + "\\" + name, table, progress);
            if (copied.verdict.verdict == Verdict::Unreadable)
                throw RuntimeError(kTableDamaged, copied.name + " is damaged: " + copied.verdict.reason +
                                                      ". No backup was made of it; the earlier ones stay");
            co_await witness.Compare(copied);
            backup.tables.push_back(copied);
        }
        witness.End();
    }
    work.Publish(backup.folder);
    backup.warnings = witness.Warnings();
    co_return backup;
}

} // namespace supervision
