#include "settings/clsINI.h"
#include "settings/kToolsSettings.h"
#include "Surroundings.h"

#include <filesystem>

namespace {

struct Search {
    DWORD process;
    bool found = false;
};

BOOL CALLBACK Look(HWND window, LPARAM parameter) {
    auto& search = *reinterpret_cast<Search*>(parameter);
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    search.found = process == search.process && IsWindowVisible(window);
    return !search.found;
}

bool HasVisibleWindow(DWORD process) {
    Search search{process};
    EnumWindows(Look, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

double LaunchTime(const std::string& program) {
    std::unique_ptr<bench::Process> process;
    return bench::Milliseconds([&] {
        process = std::make_unique<bench::Process>(program);
        for (int i = 0; !HasVisibleWindow(process->Id()); ++i) {
            if (i > 30'000)
                throw std::runtime_error("no window of " + program);
            Sleep(1);
        }
    });
}

const bench::Area launch("launch", [] {
    constexpr int kRuns = 11;
    const bench::Surroundings surroundings;
    const std::string kTools = surroundings.program / "kTools.exe";
    std::filesystem::copy_file(KTOOLS_BUILDS "/x86_64/kTools.exe", kTools);
    clsINI ini(settings::kToolsIniPath());
    ini.INIProperty(settings::key::kKernoPath, surroundings.servers.Path());
    ini.INIProperty(settings::key::kMySQLPath, "C:\\");
    std::vector<double> own, notepad;
    for (int i = 0; i < kRuns; ++i) {
        own.push_back(LaunchTime("\"" + kTools + "\""));
        notepad.push_back(LaunchTime("notepad.exe"));
    }
    const double beside = bench::Median(notepad);
    bench::Row("start of Wine's notepad to its window", "", beside, "ms");
    bench::Row("start of kTools to its window", "", bench::Median(own), "ms", {beside, "notepad"});
});

} // namespace
