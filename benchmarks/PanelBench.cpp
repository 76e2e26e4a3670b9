#include "common/Files.h"
#include "Panel.h"
#include "servers/modServerControl.h"

namespace {

using bench::kLogFile;
using bench::Panel;
using Kind = bench::ForeignWindows::Kind;
using modServerControl::Server;

void MeasureTicks(frmServerControl& form, const bench::Size& size) {
    constexpr int kRuns = 50;
    const std::pair<const char*, gui::Timer*> timers[] = {
        {"tick of tmrErrorDetector, all is well", &form.errorDetector.tmrErrorDetector},
        {"tick of tmrMonitorIP, address as before", &form.connections.tmrMonitorIP},
        {"tick of tmrBackup, not yet due", &form.backup.tmrBackup}};
    for (const auto& [name, timer] : timers)
        bench::Row(name, size, bench::PerRun(kRuns, [tick = timer] { tick->Tick(); }), "ms");
}

const bench::Area ticks("panel", [] {
    Panel panel;
    panel.form.errorDetector.tmrErrorDetector.Enabled(false);
    MeasureTicks(panel.form, {0, "other windows"});
    for (const Kind kind : {Kind::Other, Kind::ZoneLike, Kind::Dialogs}) {
        const bench::ForeignWindows windows(kind);
        MeasureTicks(panel.form, {bench::kForeignWindows, bench::ForeignWindows::Name(kind)});
    }
});

const bench::Area crash("crash", [] {
    constexpr int kRuns = 9;
    Panel panel;
    const support::ServerFolder& servers = panel.surroundings.servers;
    std::vector<double> restarts, launches;
    for (int i = 0; i < kRuns; ++i) {
        panel.form.errorDetector.tmrErrorDetector.Enabled(true);
        const HWND old = servers.MainWindow(Server::Zone);
        // Crashes come at any moment between two checks.
        const ULONGLONG moment = GetTickCount64() + static_cast<ULONGLONG>(i) * 1000 / kRuns;
        bench::WaitFor("the moment", [&] { return GetTickCount64() >= moment; });
        restarts.push_back(bench::Milliseconds([&] {
            servers.Command(Server::Zone, standin::Command::Crash);
            bench::WaitFor("the new window", [&] {
                const HWND fresh = servers.MainWindow(Server::Zone);
                return fresh && fresh != old && IsWindowVisible(fresh);
            });
        }));
        panel.form.errorDetector.tmrErrorDetector.Enabled(false);
        servers.Kill(Server::Zone);
        launches.push_back(bench::Milliseconds([&] { servers.Launch(Server::Zone); }));
    }
    const double launch = bench::Median(launches);
    bench::Row("start of a server to its window", "", launch, "ms");
    bench::Row("crash to new window, a check each second", "", bench::Median(restarts), "ms",
               {launch, "the start alone"});
});

/// Milliseconds until as many dialogs are gone when closes are posted to all of them without a look at them.
double CloseAtOnce(const support::ServerFolder& servers, int count) {
    servers.Command(Server::Zone, standin::Command::RaiseDialogs, count);
    bench::WaitFor("a dialog", [&] { return servers.DialogCount() > 0; });
    // The next ones need a moment to come up, so that only a pause tells the end.
    constexpr ULONGLONG kPause = 1000;
    const ULONGLONG start = GetTickCount64();
    ULONGLONG lastSeen = start;
    while (GetTickCount64() - lastSeen < kPause) {
        HWND window = nullptr;
        while ((window = FindWindowExA(nullptr, window, modServerControl::kDialogClass, nullptr))) {
            // The panel is a dialog too.
            if (!modServerControl::IsServerPathWindow(window))
                continue;
            PostMessageA(window, WM_CLOSE, 0, 0);
            lastSeen = GetTickCount64();
        }
        Sleep(1);
    }
    return static_cast<double>(lastSeen - start);
}

const bench::Area dialogs("dialogs", [] {
    Panel panel;
    auto& timer = panel.form.errorDetector.tmrErrorDetector;
    timer.Enabled(false);
    const support::ServerFolder& servers = panel.surroundings.servers;
    const std::string log = panel.surroundings.program / std::string("kTools\\Logs\\") + kLogFile;
    // The detector logs a dialog's text without its last character.
    const std::string logged(std::string_view(standin::kErrorText).substr(0, 20));
    const auto closed = [&] {
        const std::string text = common::FileExists(log) ? common::ReadFileText(log) : "";
        int lines = 0;
        for (std::size_t at = 0; (at = text.find(logged, at)) != std::string::npos; ++at)
            ++lines;
        return lines;
    };
    for (const int count : {50, 500}) {
        const int before = closed();
        servers.Command(Server::Zone, standin::Command::RaiseDialogs, count);
        bench::WaitFor("a dialog", [&] { return servers.DialogCount() > 0; });
        const double time = bench::Milliseconds([&] {
            bench::WaitFor("the dialogs' end", [&] {
                timer.Tick();
                return closed() - before >= count && servers.DialogCount() == 0;
            });
        });
        const double bare = count * 1000 / CloseAtOnce(servers, count);
        bench::Row("error dialogs closed and logged", {double(count), "dialogs"}, count * 1000 / time, "/s",
                   {bare, "bare closes"});
    }
});

} // namespace
