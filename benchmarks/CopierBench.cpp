#include "Bench.h"
#include "common/Files.h"
#include "common/Numbers.h"
#include "Databases.h"
#include "supervision/clsMySQLCopyDatabase.h"
#include "support/TempFolder.h"
#include "support/Wait.h"

#include <stdexcept>

namespace {

constexpr int kRuns = 3;

/// Milliseconds of the copy by the database's own programs, which run outside Wine and time themselves.
double DumpAndLoad(const support::TempFolder& folder) {
    const std::string result = folder / "milliseconds";
    DeleteFileA(result.c_str());
    const std::string command = KTOOLS_DUMP_AND_LOAD " glogin dumped \"" + result + "\"";
    const bench::Process process(command);
    bench::WaitFor("mariadb-dump", [&] { return common::FileExists(result); });
    const double time = common::Val(common::ReadFileText(result));
    if (time <= 0)
        throw std::runtime_error("mariadb-dump or mariadb failed");
    return time;
}

const bench::Area copierArea("copier", [] {
    const support::TempFolder folder;
    support::Client root, remote;
    root.Open(support::RootConnection());
    remote.Open(support::RootConnection(support::kRemoteServer));
    clsMySQLCopyDatabase copier;
    copier.SourceHostname(support::kLocalServer);
    copier.SourceUsername("root");
    copier.DestinationHostname(support::kRemoteServer);
    copier.DestinationUsername("root");
    support::Run(copier.ConnectSource());
    support::Run(copier.ConnectDestination());
    // Half as many blobs of storage as accounts.
    for (const int accounts : {10'000, 100'000}) {
        const bench::Size size(accounts, "accounts");
        bench::FillAccounts(root, accounts);
        bench::FillStorage(root, accounts / 2);
        std::vector<double> own, verified, dump;
        for (int i = 0; i < kRuns; ++i) {
            own.push_back(
                bench::Milliseconds([&] { support::Run(copier.CopyDatabase("glogin", "bk_glogin")); }));
            verified.push_back(bench::Milliseconds([&] {
                support::Run(copier.CopyDatabase("glogin", "bk_glogin"));
                const auto there = support::Run(copier.ReadBack("bk_glogin"));
                if (!supervision::Differences(copier.Copied(), there).empty())
                    throw std::runtime_error("the copy differs");
            }));
            dump.push_back(DumpAndLoad(folder));
        }
        const double beside = bench::Median(dump);
        bench::Row("mariadb-dump | mariadb", size, beside, "ms");
        bench::Row("copy of a database", size, bench::Median(own), "ms", {beside, "mariadb-dump"});
        bench::Row("copy and verification", size, bench::Median(verified), "ms", {beside, "mariadb-dump"});
    }
    bench::DropDatabases(root);
    bench::DropDatabases(remote);
});

} // namespace
