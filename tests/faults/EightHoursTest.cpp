#include "Faults.h"

#include "config/frmServerStatus.h"
#include "supervision/frmServerControl.h"

namespace {

using modServerControl::kServers;
using modServerControl::Server;

constexpr int kEightHours = 8 * 60 * 60;

/// The timers of both windows, each as often as eight hours hold it, over three running servers. What the
/// status boxes show grows as the servers write; the operator empties them.
TEST_F(Faults, EightHoursOfTicksHoldNothing) {
    for (const Server server : kServers)
        ASSERT_TRUE(servers.Launch(server));
    Supervise();
    support::MessageBoxes boxes;
    frmServerStatus status;
    status.Load();
    status.Show();
    frmServerControl panel;
    panel.Load();
    panel.Show();
    // No backup comes due, but all of its announcements.
    panel.backup.txtBackupMinutes.Text("490");
    panel.backup.txtBackupMessageTimes.Text("500");
    panel.backup.chkBackupMessage.Value(1);
    panel.backup.cmdEnableBackup.Press();

    const int seconds = Times(kEightHours / 16, kEightHours);
    Holdings start;
    for (int second = 1; second <= seconds && !HasFailure(); ++second) {
        status.tmrUpdate.Tick();
        panel.backup.tmrBackup.Tick();
        if (second % 5 == 0) {
            status.tmrUpdateMessages.Tick();
            panel.errorDetector.tmrErrorDetector.Tick();
        }
        if (second % 180 == 0)
            panel.connections.tmrMonitorIP.Tick();
        if (second % 60 == 0) {
            for (const Server server : kServers)
                servers.Command(server, standin::Command::WriteLines, 5);
            gui::DoEvents();
        }
        if (second % 300 == 0)
            for (gui::MenuItem* clear :
                 {&status.mnuClearLogin, &status.mnuClearCharacter, &status.mnuClearZone})
                clear->Choose();
        // Whatever is made once has been made by then.
        if (second == seconds / 3)
            start = Holdings::Now();
    }
    const Holdings end = Holdings::Now();
    EXPECT_LE(end.handles, start.handles + 3) << start << " became " << end;
    EXPECT_LE(end.gdiObjects, start.gdiObjects + 3) << start << " became " << end;
    EXPECT_EQ(end.windows, start.windows) << start << " became " << end;
    EXPECT_LE(end.kilobytes, start.kilobytes + 512) << start << " became " << end;
    RecordProperty("held", testing::PrintToString(end));
    EXPECT_TRUE(boxes.Seen().empty());
    for (const Server server : kServers)
        EXPECT_EQ(servers.Instances(server), 1);
}

} // namespace
