#include "Bench.h"
#include "database/Recordset.h"
#include "Databases.h"
#include "support/Network.h"

namespace {

using namespace std::chrono_literals;

constexpr const char* kProxied = "127.0.0.7";

/// The longest time between two ticks of a timer of ten milliseconds while the task runs to its end,
/// whichever that is.
double LongestGap(gui::Task<> task) {
    auto last = std::chrono::steady_clock::now();
    std::chrono::duration<double, std::milli> longest{0};
    const auto tick = [&] {
        const auto now = std::chrono::steady_clock::now();
        longest = std::max(longest, std::chrono::duration<double, std::milli>(now - last));
        last = now;
    };
    const support::Meanwhile ticking(tick);
    try {
        support::Run(std::move(task));
    } catch (const RuntimeError&) {
        // That it ends without an answer is what is looked for.
    }
    tick();
    return longest.count();
}

gui::Task<> Insert(database::Connection& connection) {
    co_await connection.Execute("INSERT INTO glogin.account (Name) VALUES ('mine')");
}

const bench::Area waitsArea("waits", [] {
    support::Client root;
    root.Open(support::RootConnection());
    bench::FillAccounts(root, 100'000);
    const auto row = [](const char* state, double gap) {
        bench::Row("longest time without a message", state, gap, "ms");
    };
    database::Connection connection;
    connection.Limit(2s);
    {
        const support::SilentPort silent(kProxied);
        row("server accepts and stays silent",
            LongestGap(connection.Open(support::RootConnection(kProxied))));
    }
    support::Proxy proxy(kProxied);
    support::Run(connection.Open(support::RootConnection(kProxied)));
    root.Execute("LOCK TABLES glogin.account WRITE");
    row("table is locked", LongestGap(Insert(connection)));
    root.Execute("UNLOCK TABLES");
    support::Run(connection.Revive());
    proxy.Hold(true);
    row("server stops in mid-flight", LongestGap(Insert(connection)));
    proxy.Hold(false);
    support::Run(connection.Revive());
    database::Recordset accounts;
    row("100,000 accounts are read", LongestGap(accounts.Open(connection, "SELECT * FROM glogin.account")));
    bench::DropDatabases(root);
});

} // namespace
