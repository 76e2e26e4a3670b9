#include "Bench.h"

#include "common/Files.h"
#include "common/Handle.h"
#include "config/frmServerStatus.h"
#include "gui/Application.h"
#include "servers/modServerControl.h"
#include "StandinCommands.h"

#include <filesystem>
#include <stdexcept>
#include <vector>

namespace {

using modServerControl::Server;
using Process = common::Handle<HANDLE, CloseHandle>;

constexpr int kForeignWindows = 500;
constexpr const char* kForeignTitle = "Some other program's window";

void RunMessages() {
    MSG message;
    while (GetMessageA(&message, nullptr, 0, 0) > 0)
        DispatchMessageA(&message);
}

/// Windows of another program: of a class of its own, or of the class of the servers' main windows.
void MakeForeignWindows(const char* windowClass) {
    WNDCLASSA registered{};
    registered.lpfnWndProc = DefWindowProcA;
    registered.hInstance = GetModuleHandleA(nullptr);
    registered.lpszClassName = windowClass;
    RegisterClassA(&registered);
    for (int i = 0; i < kForeignWindows; ++i)
        CreateWindowExA(WS_EX_TOOLWINDOW, windowClass, kForeignTitle, WS_POPUP | WS_CAPTION, 0, 0, 100, 50,
                        nullptr, nullptr, registered.hInstance, nullptr);
    RunMessages();
}

const bench::Helper otherWindows("windows", [] { MakeForeignWindows("SomeOtherProgram"); });
const bench::Helper lookAlikes("zone-class-windows", [] { MakeForeignWindows("TfrmMain"); });

int CountForeignWindows() {
    int count = 0;
    HWND window = nullptr;
    while ((window = FindWindowExA(nullptr, window, nullptr, kForeignTitle)))
        ++count;
    return count;
}

void WaitFor(const char* what, const std::function<bool()>& condition) {
    for (int i = 0; !condition(); ++i) {
        if (i > 3000)
            throw std::runtime_error(std::string("no ") + what);
        Sleep(10);
        gui::DoEvents();
    }
}

/// The three stand-in servers, quiet, while the object lives.
class Suite {
public:
    Suite() {
        SetEnvironmentVariableA(standin::kQuietVariable, "1");
        for (const Server server : modServerControl::kServers) {
            const std::string path =
                std::string(KTOOLS_STANDINS) + "/" + modServerControl::ComponentOf(server).executable;
            STARTUPINFOA startup{};
            startup.cb = sizeof startup;
            PROCESS_INFORMATION started{};
            if (!CreateProcessA(path.c_str(), nullptr, nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                                &started))
                throw std::runtime_error("no stand-in " + path);
            CloseHandle(started.hThread);
            processes_.emplace_back(started.hProcess);
            WaitFor("main window", [&] { return modServerControl::IsRunning(server); });
        }
    }
    ~Suite() {
        for (const Process& process : processes_)
            TerminateProcess(process.get(), 0);
    }
    Suite(const Suite&) = delete;
    Suite& operator=(const Suite&) = delete;

private:
    std::vector<Process> processes_;
};

/// The window's own timers must not tick beside the ticks that are measured.
void LoadStill(frmServerStatus& form) {
    const std::string folder = (std::filesystem::temp_directory_path() / "kToolsBench").string();
    std::filesystem::create_directories(folder);
    common::ProgramFolder(folder);
    form.Show();
    form.tmrUpdate.Enabled(false);
    form.tmrUpdateMessages.Enabled(false);
}

double PerRun(int runs, const std::function<void()>& work) {
    const double all = bench::Milliseconds([&] {
        for (int i = 0; i < runs; ++i)
            work();
    });
    return all / runs;
}

void MeasureTicks(frmServerStatus& form, const std::string& where) {
    constexpr int kRuns = 50;
    bench::Row("tick of tmrUpdate" + where, PerRun(kRuns, [&] { form.tmrUpdate.Tick(); }), "ms");
    bench::Row("tick of tmrUpdateMessages, nothing new" + where,
               PerRun(kRuns, [&] { form.tmrUpdateMessages.Tick(); }), "ms");
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
            gui::DoEvents();
        }
        const std::string to = " to a box that holds " + std::to_string(megabytes) + " MB";
        bench::Row("append 1,000 lines, one by one," + to, PerRun(kLines, [&] { box.Append(line); }) * kLines,
                   "ms");
        bench::Row("append 1,000 lines at once" + to, PerRun(3, [&] { box.Append(lines); }), "ms");
        bench::Row(
            "draw" + to,
            PerRun(10, [&] { RedrawWindow(box.Window(), nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW); }),
            "ms");
        held += 4 * lines.size();
    }
}

const bench::Area status("status window", [] {
    const Suite suite;
    frmServerStatus form;
    LoadStill(form);
    MeasureTicks(form, "");
    for (const char* helper : {"windows", "zone-class-windows"}) {
        const bench::HelperProcess windows(helper);
        WaitFor("foreign windows", [] { return CountForeignWindows() == kForeignWindows; });
        MeasureTicks(form, std::string(", 500 foreign ") + helper);
    }
    MeasureAppend(form);
});

} // namespace
