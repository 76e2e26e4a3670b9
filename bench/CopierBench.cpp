#include "Bench.h"

#include "common/Files.h"
#include "common/Numbers.h"
#include "dbsetup/Schema.h"
#include "supervision/clsMySQLCopyDatabase.h"

#include <windows.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <vector>

namespace {

constexpr const char* kSource = "localhost";
constexpr const char* kDestination = "127.0.0.2";

/// The folder that the two private servers share with us, as the system below Wine calls it.
std::string ServersFolder() {
    const char* folder = std::getenv("KTOOLS_MARIADB");
    if (!folder)
        throw std::runtime_error("no database servers: scripts/mariadb.sh starts them");
    return folder;
}

/// Copies `glogin` by the servers' own programs, and returns the milliseconds by the shell's clock: Wine's
/// start of a program is not in them. A program below Wine cannot be waited for, so it leaves a file.
double DumpAndLoad() {
    const std::string script = ServersFolder() + "/dump.sh";
    const std::string result = ServersFolder() + "/dump.ms";
    DeleteFileA(("Z:" + result).c_str());
    std::ofstream("Z:" + script, std::ios::binary)
        << "set -e\nstart=$(date +%s%N)\n"
           "mariadb --no-defaults -h 127.0.0.2 -u root -e 'DROP DATABASE IF EXISTS dump_glogin; "
           "CREATE DATABASE dump_glogin'\n"
           "mariadb-dump --no-defaults -h 127.0.0.1 -u root glogin | "
           "mariadb --no-defaults -h 127.0.0.2 -u root dump_glogin\n"
           "echo $((($(date +%s%N) - start) / 1000)) >"
        << result << ".new\nmv " << result << ".new " << result << "\n";
    std::string command = "Z:\\bin\\sh " + script;
    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION started{};
    if (!CreateProcessA("Z:\\bin\\sh", command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                        &started))
        throw std::runtime_error("no shell to run mariadb-dump by");
    CloseHandle(started.hThread);
    CloseHandle(started.hProcess);
    for (int i = 0; !common::FileExists("Z:" + result); ++i) {
        if (i > 6000)
            throw std::runtime_error("mariadb-dump | mariadb did not end");
        Sleep(10);
    }
    return common::Val(common::ReadFileText("Z:" + result)) / 1000;
}

void Fill(database::Connection& server, int accounts, int blobs) {
    server.Execute("DROP DATABASE IF EXISTS glogin");
    const auto& login = dbsetup::Databases()[0];
    server.Execute(std::string(login.createStatement));
    server.Execute("USE glogin");
    for (const auto& table : login.tables)
        server.Execute(dbsetup::EngineForm(table.CreateStatement()));
    server.Execute("INSERT INTO account SELECT seq, CONCAT('player', seq), LEFT(MD5(seq), 24), seq % 2, "
                   "CONCAT(seq, '@x.y'), "
                   "0, NULL, seq, NULL, 0 FROM seq_1_to_" +
                   std::to_string(accounts));
    // Bytes of every value.
    server.Execute(
        "INSERT INTO storageinfo SELECT seq, LEFT(REPEAT(UNHEX(SHA2(seq, 512)), 16), 1000) FROM seq_1_to_" +
        std::to_string(blobs));
}

void Compare(database::Connection& server, int accounts, int blobs) {
    Fill(server, accounts, blobs);
    clsMySQLCopyDatabase copier;
    copier.SourceHostname(kSource);
    copier.SourceUsername("root");
    copier.DestinationHostname(kDestination);
    copier.DestinationUsername("root");
    const auto copy = [&] {
        copier.ConnectSource();
        copier.ConnectDestination();
        copier.CopyDatabase("glogin", "bk_glogin");
        copier.DisconnectSource();
        copier.DisconnectDestination();
    };
    // By turns, and the best of each: what else the machine does falls on both.
    std::vector<double> ours;
    std::vector<double> theirs;
    for (int turn = 0; turn < 5; ++turn) {
        ours.push_back(bench::Milliseconds(copy));
        theirs.push_back(DumpAndLoad());
    }
    const double best = std::ranges::min(ours);
    const double bestOfTheirs = std::ranges::min(theirs);
    const std::string what = common::ThousandsText(accounts) + " accounts and " +
                             common::ThousandsText(blobs) + " blobs of 1,000 bytes";
    bench::Row("copier, " + what, best, "ms");
    bench::Row("mariadb-dump | mariadb, " + what, bestOfTheirs, "ms");
    bench::Row("  the copier takes so much of that", best / bestOfTheirs, "");
}

const bench::Area copier("database copier", [] {
    database::Connection server;
    server.Open(database::MySQLConnectionString(kSource, "root", ""));
    Compare(server, 10'000, 5'000);
    Compare(server, 100'000, 50'000);
    server.Execute("DROP DATABASE glogin");
    server.Open(database::MySQLConnectionString(kDestination, "root", ""));
    server.Execute("DROP DATABASE bk_glogin");
    server.Execute("DROP DATABASE dump_glogin");
});

} // namespace
