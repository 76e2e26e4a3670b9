#include "config/frmServerStatus.h"
#include "Surroundings.h"

namespace {

using Kind = bench::ForeignWindows::Kind;

/// The window's own timers must not tick beside the ticks that are measured.
void LoadStill(frmServerStatus& form) {
    form.Show();
    form.tmrUpdate.Enabled(false);
    form.tmrUpdateMessages.Enabled(false);
}

void MeasureTicks(frmServerStatus& form, const bench::Size& size) {
    constexpr int kRuns = 50;
    bench::Row("tick of tmrUpdate", size, bench::PerRun(kRuns, [&] { form.tmrUpdate.Tick(); }), "ms");
    bench::Row("tick of tmrUpdateMessages, nothing new", size,
               bench::PerRun(kRuns, [&] { form.tmrUpdateMessages.Tick(); }), "ms");
}

void MeasureAppend(frmServerStatus& form) {
    constexpr int kLines = 1000;
    const std::string line = "\r\n[12:34:56] Character 512 entered the map, 20 saved";
    std::string lines;
    for (int i = 0; i < kLines; ++i)
        lines += line;
    auto& box = form.txtZoneStatus;
    std::size_t held = 0;
    for (const std::size_t megabytes : {0, 1, 20, 50}) {
        while (held < megabytes * 1'000'000) {
            box.Append(lines);
            held += lines.size();
            support::DispatchPending();
        }
        const bench::Size size(static_cast<double>(megabytes), "MB in the box");
        bench::Row("append 1,000 lines, one by one", size, bench::Milliseconds([&] {
                       for (int i = 0; i < kLines; ++i)
                           box.Append(line);
                   }),
                   "ms");
        bench::Row("append 1,000 lines at once", size, bench::PerRun(3, [&] { box.Append(lines); }), "ms");
        const double draw = bench::PerRun(
            10, [&] { RedrawWindow(box.Window(), nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW); });
        bench::Row("draw the box", size, draw, "ms");
        held += 4 * lines.size();
    }
}

const bench::Area status("status", [] {
    bench::Surroundings surroundings;
    surroundings.LaunchSuite();
    frmServerStatus form;
    LoadStill(form);
    MeasureTicks(form, {0, "other windows"});
    for (const Kind kind : {Kind::Other, Kind::ZoneLike}) {
        const bench::ForeignWindows windows(kind);
        MeasureTicks(form, {bench::kForeignWindows, bench::ForeignWindows::Name(kind)});
    }
    MeasureAppend(form);
});

} // namespace
