#include "Bench.h"
#include "common/Files.h"
#include "Databases.h"
#include "dbsetup/Schema.h"
#include "servers/Servers.h"
#include "supervision/FileBackup.h"
#include "support/TempFolder.h"
#include "support/Wait.h"
#include "Surroundings.h"

#include <stdexcept>

namespace {

constexpr int kRuns = 5;

std::string DataOf(const suite::Database& database) {
    return support::DataFolder() + "\\" + std::string(database.name);
}

/// Calls `visit` with the path of each file that a backup has, and its name.
void ForEachFile(const auto& visit) {
    for (const suite::Database& database : suite::Databases())
        for (const suite::Table& table : database.tables)
            for (const std::string_view ending : suite::kTableFileEndings) {
                const std::string name = std::string(table.name) + std::string(ending);
                visit(DataOf(database) + "\\" + name, std::string(database.name) + "-" + name);
            }
}

const bench::Area backupArea("backup", [] {
    const bench::Surroundings surroundings;
    modServerControl::MySQLPath(support::DataFolder() + "\\..\\");
    support::Client root;
    root.Open(support::RootConnection());
    for (const int accounts : {10'000, 100'000}) {
        const bench::Size size(accounts, "accounts");
        bench::FillAccounts(root, accounts);
        for (const suite::Database& database : suite::Databases()) {
            root.Execute(dbsetup::CreateStatement(database));
            for (const suite::Table& table : database.tables)
                root.Execute(dbsetup::EngineForm(dbsetup::CreateStatement(table)));
        }
        bench::FillStorage(root, accounts / 2);
        root.Execute("FLUSH TABLES");
        std::vector<double> own, plain;
        for (int run = 0; run < kRuns; ++run) {
            plain.push_back(bench::Milliseconds([] {
                const support::TempFolder copy;
                ForEachFile([&](const std::string& path, const std::string& name) {
                    if (!CopyFileA(path.c_str(), (copy / name).c_str(), FALSE))
                        throw std::runtime_error("not copied: " + path);
                });
            }));
            own.push_back(bench::Milliseconds(
                [] { support::Run(supervision::BackUpFiles([](const std::string&) {}, {})); }));
        }
        const double beside = bench::Median(plain);
        bench::Row("plain copy of the files", size, beside, "ms");
        bench::Row("file backup with its proof", size, bench::Median(own), "ms", {beside, "plain copy"});
    }
    modServerControl::MySQLPath("");
    bench::DropDatabases(root);
});

} // namespace
