#include "Faults.h"

#include "servers/modServerControl.h"
#include "supervision/ErrorDetector.h"
#include "supervision/frmServerControl.h"

#include <random>
#include <set>

namespace {

using modServerControl::kServers;
using modServerControl::Server;
using standin::Command;
using support::WaitUntil;

TEST_F(Faults, ServersThatCrashComeBackOnceEach) {
    Supervise();
    TurnOn({settings::key::kErrorCheckingInterval});
    support::MessageBoxes boxes;
    gui::Local<frmServerControl> held;
    frmServerControl& panel = *held;
    panel.Load();
    int most = 0;
    const auto once = [&](Server server) {
        const int instances = servers.Instances(server);
        most = std::max(most, instances);
        return instances == 1;
    };
    const auto up = [&](Server server) { return once(server) && servers.MainWindow(server); };
    std::mt19937 random(1);
    Holdings before;
    const int storms = Times(15, 45);
    for (int storm = 0; storm <= storms && !HasFailure(); ++storm) {
        // Some meet a server that has only just been launched.
        const bool early = random() % 3 == 0;
        ASSERT_TRUE(WaitUntil([&] {
            return std::ranges::all_of(kServers, [&](Server server) {
                return early && server == Server::Zone ? once(server) : up(server);
            });
        })) << "storm "
            << storm << ", " << most << " instances, " << modServerControl::TrayStatusText();
        ASSERT_EQ(most, 1) << "storm " << storm;
        if (storm == 1)
            before = Holdings::Now();
        const unsigned victims = storm == storms ? 0 : random() % 7 + 1;
        for (const Server server : kServers) {
            if (!(victims & 1u << static_cast<unsigned>(server)))
                continue;
            const HWND dying = servers.MainWindow(server);
            if (!early && random() % 2)
                servers.Command(server, Command::Crash);
            else
                servers.Kill(server);
            // The next one may be up before anybody sees that none is.
            ASSERT_TRUE(WaitUntil([&] { return dying ? !IsWindow(dying) : !servers.IsRunning(server); }));
        }
    }
    EXPECT_TRUE(boxes.Seen().empty());
    const Holdings after = Holdings::Now();
    EXPECT_LE(after.handles, before.handles + 3) << before << " became " << after;
    RecordProperty("held", testing::PrintToString(after));
}

TEST_F(Faults, AStormOfDialogsIsClosedAndLogged) {
    const int dialogs = Times(300, 1000);
    ASSERT_TRUE(servers.Launch(Server::Login));
    servers.Command(Server::Login, Command::RaiseDialogs, dialogs);
    clsLog log;
    const supervision::ErrorDetectorSettings settings{
        .handleDialogs = true, .logFilename = "storm.log", .message = {}};
    const supervision::ErrorDetector detector(log, kerno, [&] { return settings; });
    const auto logged = [&] {
        std::set<std::string_view> entries;
        const std::string text = Log("storm.log");
        for (const std::string_view line : common::Lines(text))
            if (line.starts_with("Error: "))
                entries.insert(line);
        return static_cast<int>(entries.size());
    };
    EXPECT_TRUE(WaitUntil(
        [&] {
            support::Run(detector.Handle());
            return logged() == dialogs;
        },
        std::chrono::minutes(5)))
        << logged();
    EXPECT_EQ(servers.DialogCount(), 0);
}

} // namespace
