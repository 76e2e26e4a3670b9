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
    gui::Local<frmServerControl> kept;
    frmServerControl& panel = *kept;
    panel.Load();
    panel.Show();
    // No backup comes due, but all of its announcements.
    panel.backup.txtBackupMinutes.Text("490");
    panel.backup.txtBackupMessageTimes.Text("500");
    panel.backup.chkBackupMessage.Value(1);
    panel.backup.cmdEnableBackup.Press();

    const int seconds = Times(kEightHours / 16, kEightHours);
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
            for (gui::MenuItem* clear :
                 {&status.mnuClearLogin, &status.mnuClearCharacter, &status.mnuClearZone})
                clear->Choose();
            held.push_back(Holdings::Now());
        }
    }
    // Whatever is made once has been made in the first third. The heap gives back what it is rid of now and
    // then only, so the least of many moments counts.
    const auto least = [&, third = static_cast<long>(held.size() / 3)](long after) {
        const auto first = held.begin() + after * third;
        return *std::min_element(first, first + third, [](const Holdings& a, const Holdings& b) {
            return a.kilobytes < b.kilobytes;
        });
    };
    const Holdings start = least(1);
    const Holdings end = least(2);
    EXPECT_LE(end.handles, start.handles + 3) << start << " became " << end;
    EXPECT_LE(end.gdiObjects, start.gdiObjects + 3) << start << " became " << end;
    EXPECT_EQ(end.windows, start.windows) << start << " became " << end;
    EXPECT_LE(end.kilobytes, start.kilobytes + 256) << start << " became " << end;
    RecordProperty("held", testing::PrintToString(end));
    EXPECT_TRUE(boxes.Seen().empty());
    for (const Server server : kServers)
        EXPECT_EQ(servers.Instances(server), 1);
}

} // namespace
