#include "common/Files.h"
#include "config/frmServerSettings.h"
#include "settings/kToolsSettings.h"
#include "supervision/frmServerControl.h"
#include "Surroundings.h"

namespace {

constexpr int kRuns = 75;

/// A file of other lines in front of those that the window owns.
std::string Padding(int lines) {
    std::string text;
    for (int i = 0; i < lines; ++i)
        text += "OtherSetting" + std::to_string(i) + "=a value of some length\r\n";
    return text;
}

/// Prints the time of `save`, which changes nothing of what it needs, beside that of one rewrite of each file
/// (read and replaced, as the tool does both) without asking a control or looking for a setting; one after
/// the other, so that both meet the same load of the machine.
void MeasureSave(const std::string& name, const bench::Size& size, const std::vector<std::string>& paths,
                 const std::function<double()>& save) {
    save();
    std::vector<double> own, plain;
    for (int run = 0; run < kRuns; ++run) {
        own.push_back(save());
        plain.push_back(bench::Milliseconds([&] {
            for (const std::string& path : paths)
                common::ReplaceFileText(path, common::ReadFileText(path));
        }));
    }
    bench::Row(name, size, bench::Median(own), "ms",
               {bench::Median(plain), paths.size() == 1 ? "one rewrite" : "one rewrite of each file"});
}

const bench::Area settingsArea("settings", [] {
    const bench::Surroundings surroundings;
    const std::string kernoIni = settings::KernoIniPath(surroundings.servers.Path());
    const std::string kToolsIni = settings::kToolsIniPath();
    const std::string defaults = common::ReadFileText(kToolsIni);
    for (const int lines : {50, 500, 5000}) {
        const bench::Size size(lines, "lines of file");
        support::WriteFile(kernoIni, Padding(lines - 35));
        frmServerSettings form;
        form.Load();
        MeasureSave("configurator's Save, 37 settings", size, {kernoIni, kToolsIni},
                    [&] { return bench::Milliseconds([&] { form.SaveSettings(); }); });
        form.Unload();
        support::WriteFile(kToolsIni, defaults + Padding(lines - 50));
        frmServerControl panel;
        panel.Load();
        // At the end of the Windows session the panel saves as it does when it closes, and its window stays.
        MeasureSave("control panel's Save, 25 settings", size, {kToolsIni}, [&] {
            return bench::Milliseconds([&] { SendMessageA(panel.Window(), WM_ENDSESSION, TRUE, 0); });
        });
        panel.Unload();
    }
});

} // namespace
