#include "Faults.h"

#include "app/frmMainMenu.h"
#include "common/Text.h"
#include "config/frmServerStatus.h"
#include "servers/Journal.h"
#include "supervision/frmServerControl.h"
#include "support/Tray.h"

#include <random>

namespace {

using modServerControl::kServers;
using modServerControl::Server;

constexpr int kEightHours = 8 * 60 * 60;

/// The timers of both windows, each as often as eight hours hold it, over three servers of which each minute
/// one crashes and another one raises a dialog. What the status boxes show grows as the servers write; the
/// operator empties them.
TEST_F(Faults, EightHoursOfTicksHoldNothing) {
    for (const Server server : kServers)
        ASSERT_TRUE(servers.Launch(server));
    Supervise();
    Set({{settings::key::kKernoPath, servers.Path()}, {settings::key::kMySQLPath, servers.Path()}});
    support::MessageBoxes boxes;
    support::TaskBar taskBar;
    gui::Local<frmMainMenu> menu(false);
    menu->Load();
    menu->cmdMinimizetoTray.Press();
    frmServerStatus status;
    status.Load();
    status.Show();
    gui::Local<frmServerControl> kept;
    frmServerControl& panel = *kept;
    panel.Load();
    panel.Show();
    // No backup comes due, but all of its announcements.
    panel.backup.txtBackupMinutes.Text("490");
    panel.backup.txtBackupMessageTimes.Text("500");
    panel.backup.chkBackupMessage.Value(1);
    panel.backup.cmdEnableBackup.Press();
    // What stands in the way of a backup is told.
    EXPECT_TRUE(support::Settle());
    boxes.Clear();

    const auto quiet = [&] {
        panel.errorDetector.tmrErrorDetector.Tick();
        return servers.DialogCount() == 0 && std::ranges::all_of(kServers, [&](Server server) {
                   return servers.Instances(server) == 1 && servers.MainWindow(server);
               });
    };
    std::mt19937 random(1);
    const int seconds = Times(kEightHours / 32, kEightHours);
    std::vector<Holdings> held;
    for (int second = 1; second <= seconds && !HasFailure(); ++second) {
        status.tmrUpdate.Tick();
        panel.backup.tmrBackup.Tick();
        if (second % 5 == 0) {
            for (const Server server : kServers)
                servers.Command(server, standin::Command::WriteLines, 5);
            support::DispatchPending();
            status.tmrUpdateMessages.Tick();
            panel.errorDetector.tmrErrorDetector.Tick();
        }
        if (second % 180 == 0)
            panel.connections.tmrMonitorIP.Tick();
        if (second % 60 == 0) {
            const std::size_t victim = random() % kServers.size();
            servers.Command(kServers[(victim + 1) % kServers.size()], standin::Command::RaiseDialogs);
            const HWND before = servers.MainWindow(kServers[victim]);
            servers.Command(kServers[victim], standin::Command::Crash);
            // The next one may be up before anybody sees that none is.
            ASSERT_TRUE(support::WaitUntil([&] { return !IsWindow(before); }));
            ASSERT_TRUE(support::WaitUntil(quiet)) << journal::LastLines(10);
            for (gui::MenuItem* clear :
                 {&status.mnuClearLogin, &status.mnuClearCharacter, &status.mnuClearZone})
                clear->Choose();
            held.push_back(Holdings::Now());
        }
    }
    // Whatever is made once has been made in the first third. The heap gives back what it is rid of now and
    // then only, and what is being drawn needs objects, so the least of many moments counts.
    const auto least = [&, third = static_cast<long>(held.size() / 3)](long after) {
        Holdings all = held[static_cast<std::size_t>(after * third)];
        for (auto each = held.begin() + after * third; each != held.begin() + (after + 1) * third; ++each)
            all = {std::min(all.handles, each->handles), std::min(all.gdiObjects, each->gdiObjects),
                   std::min(all.windows, each->windows), std::min(all.kilobytes, each->kilobytes)};
        return all;
    };
    const Holdings start = least(1);
    const Holdings end = least(2);
    EXPECT_LE(end.handles, start.handles + 3) << start << " became " << end;
    EXPECT_LE(end.gdiObjects, start.gdiObjects + 3) << start << " became " << end;
    EXPECT_EQ(end.windows, start.windows) << start << " became " << end;
    EXPECT_LE(end.kilobytes, start.kilobytes + 256) << start << " became " << end;
    RecordProperty("held", testing::PrintToString(end));
    EXPECT_TRUE(support::Settle());
    EXPECT_TRUE(boxes.Seen().empty()) << testing::PrintToString(boxes.Texts());
    EXPECT_TRUE(support::WaitUntil([&] { return taskBar.tip.find(" times") != std::string::npos; }))
        << taskBar.tip;
    // Each of the crashes has its line, or the journal would have begun a new file.
    const std::string lines = journal::LastLines(seconds);
    std::size_t launches = 0;
    for (const std::string_view line : common::Lines(lines))
        launches += line.find("server: gone; started; window after ") != line.npos;
    EXPECT_GE(launches, std::min<std::size_t>(held.size(), 100));
    for (const Server server : kServers)
        EXPECT_EQ(servers.Instances(server), 1);
}

} // namespace
