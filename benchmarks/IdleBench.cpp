#include "app/frmMainMenu.ids.h"
#include "settings/kToolsSettings.h"
#include "Surroundings.h"

#include <psapi.h>
#include <tlhelp32.h>

#include <filesystem>

namespace {

constexpr DWORD kMinute = 60'000;

/// What a program has and uses by itself.
class Usage {
public:
    explicit Usage(DWORD process)
        : id_(process), process_(OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, process)),
          before_(ProcessorTime()) {}
    ~Usage() { CloseHandle(process_); }
    Usage(const Usage&) = delete;

    /// Milliseconds of processor time since the object was made.
    double Processor() const { return ProcessorTime() - before_; }
    double Kilobytes() const {
        PROCESS_MEMORY_COUNTERS memory{};
        GetProcessMemoryInfo(process_, &memory, sizeof memory);
        return static_cast<double>(memory.WorkingSetSize) / 1000;
    }

private:
    /// By its threads, because Wine tells no times of another process.
    double ProcessorTime() const {
        const auto milliseconds = [](const FILETIME& time) {
            return (time.dwHighDateTime * 4294967296.0 + time.dwLowDateTime) / 10'000;
        };
        double sum = 0;
        const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
        THREADENTRY32 entry{};
        entry.dwSize = sizeof entry;
        for (BOOL more = Thread32First(snapshot, &entry); more; more = Thread32Next(snapshot, &entry)) {
            if (entry.th32OwnerProcessID != id_)
                continue;
            const HANDLE thread = OpenThread(THREAD_QUERY_INFORMATION, FALSE, entry.th32ThreadID);
            FILETIME start, end, kernel, user;
            if (GetThreadTimes(thread, &start, &end, &kernel, &user))
                sum += milliseconds(kernel) + milliseconds(user);
            CloseHandle(thread);
        }
        CloseHandle(snapshot);
        return sum;
    }

    DWORD id_;
    HANDLE process_;
    double before_;
};

const bench::Area idle("idle", [] {
    using namespace settings::key;
    bench::Surroundings surroundings;
    surroundings.SetAddress();
    surroundings.Set({{kKernoPath, surroundings.servers.Path()}, {kMySQLPath, "C:\\"}});
    surroundings.Set({{kErrorCheckingInterval, "1"}, {kDialogsOptions, "0"}});
    surroundings.TurnOn({kEnableErrorDetector, kMaintainServer, kMaintainLoginServer,
                         kMaintainCharacterServer, kMaintainZoneServer, kHandleDialogs, kLogErrorPopups,
                         kCheckIPChanges});
    surroundings.LaunchSuite();
    const std::string kTools = surroundings.program / "kTools.exe";
    std::filesystem::copy_file(KTOOLS_BUILDS "/x86_64/kTools.exe", kTools);
    const bench::Process notepad("notepad.exe"), own("\"" + kTools + "\"");
    HWND menu = nullptr;
    bench::WaitFor("the main window",
                   [&] { return (menu = FindWindowA(nullptr, "Kerno Tools ::")) && IsWindowVisible(menu); });
    for (const int button : {IDC_frmMainMenu_cmdServerControl, IDC_frmMainMenu_cmdServerStatus})
        // With the button itself, as a press has it; without it would be a menu entry's.
        PostMessageA(menu, WM_COMMAND, MAKEWPARAM(button, BN_CLICKED),
                     reinterpret_cast<LPARAM>(GetDlgItem(menu, button)));
    bench::WaitFor("the control panel", [] { return FindWindowA(nullptr, "Kerno Tools :: Server Control"); });
    const Usage usage(own.Id()), beside(notepad.Id());
    Sleep(kMinute);
    bench::Row("memory of Wine's notepad", "idle", beside.Kilobytes(), "kB");
    bench::Row("memory of kTools", "idle, all supervision on", usage.Kilobytes(), "kB",
               {beside.Kilobytes(), "notepad"});
    bench::Row("processor time of Wine's notepad in a minute", "idle", beside.Processor(), "ms");
    bench::Row("processor time of kTools in a minute", "idle, all supervision on", usage.Processor(), "ms");
});

} // namespace
