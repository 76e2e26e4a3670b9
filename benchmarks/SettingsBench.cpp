#include "common/Files.h"
#include "config/frmServerSettings.h"
#include "settings/kToolsSettings.h"
#include "supervision/frmServerControl.h"
#include "Surroundings.h"

namespace {

constexpr int kRuns = 15;

/// A file of other lines in front of those that the window owns.
std::string Padding(int lines) {
    std::string text;
    for (int i = 0; i < lines; ++i)
        text += "OtherSetting" + std::to_string(i) + "=a value of some length\r\n";
    return text;
}

/// The same bytes written as often as a save writes them, without looking for a setting.
bench::Beside PlainWrites(const std::string& path, int writes) {
    const std::string text = common::ReadFileText(path);
    const double time = bench::MedianOf(kRuns, [&] {
        for (int i = 0; i < writes; ++i)
            common::ReplaceFileText(path, text);
    });
    return {time, "plain writes"};
}

const bench::Area settingsArea("settings", [] {
    const bench::Surroundings surroundings;
    const std::string kernoIni = settings::KernoIniPath(surroundings.servers.Path());
    const std::string kToolsIni = settings::kToolsIniPath();
    const std::string defaults = common::ReadFileText(kToolsIni);
    for (const int lines : {50, 500, 5000}) {
        const bench::Size size(lines, "lines of file");
        support::WriteFile(kernoIni, Padding(lines - 35));
        {
            frmServerSettings form;
            form.Load();
            form.SaveSettings();
            const double save = bench::MedianOf(kRuns, [&] { form.SaveSettings(); });
            bench::Row("configurator's Save, 37 settings", size, save, "ms", PlainWrites(kernoIni, 37));
        }
        support::WriteFile(kToolsIni, defaults + Padding(lines - 50));
        frmServerControl panel;
        std::vector<double> unloads;
        for (int i = 0; i < kRuns; ++i) {
            panel.Load();
            unloads.push_back(bench::Milliseconds([&] { panel.Unload(); }));
        }
        bench::Row("control panel's close, 25 settings", size, bench::Median(unloads), "ms",
                   PlainWrites(kToolsIni, 25));
    }
});

} // namespace
