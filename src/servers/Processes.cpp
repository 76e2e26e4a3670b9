#include "servers/Processes.h"

#include "common/Files.h"
#include "common/FileTime.h"
#include "common/Text.h"
#include "servers/ForeignWindows.h"

#include <tlhelp32.h>

#include <algorithm>
#include <array>
#include <functional>
#include <optional>
#include <string_view>

namespace modServerControl {

namespace {

using Handle = common::Handle<HANDLE, CloseHandle>;

/// What tells a file from every other, however its path is written; nothing when it cannot be opened.
std::optional<std::array<DWORD, 3>> FileIdentity(const std::string& path) {
    const common::FileHandle file = common::TryOpenFile(path, 0, OPEN_EXISTING);
    BY_HANDLE_FILE_INFORMATION information;
    if (!file || !GetFileInformationByHandle(file.get(), &information))
        return {};
    return std::array{information.dwVolumeSerialNumber, information.nFileIndexHigh,
                      information.nFileIndexLow};
}

/// By the file itself: the servers of another suite on this computer have the same names.
bool Runs(HANDLE process, const std::string& executable) {
    const auto running = FileIdentity(GetProcessPath(process));
    // Two files that cannot be opened are not the same file.
    return running && running == FileIdentity(executable);
}

/// Those that can be opened, with their ids.
void ForEachProcess(std::string_view fileName, const std::function<void(HANDLE, DWORD)>& use) {
    const auto processes = common::Own<Handle>(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    PROCESSENTRY32 entry;
    entry.dwSize = sizeof entry;
    for (BOOL more = Process32First(processes.get(), &entry); more;
         more = Process32Next(processes.get(), &entry)) {
        if (!common::EqualsIgnoreCase(entry.szExeFile, fileName))
            continue;
        const Handle process(
            OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION | SYNCHRONIZE, FALSE, entry.th32ProcessID));
        if (process)
            use(process.get(), entry.th32ProcessID);
    }
}

} // namespace

std::vector<ProcessId> ProcessesOf(Server server) {
    std::vector<ProcessId> found;
    ForEachProcess(ComponentOf(server).executable, [&](HANDLE process, DWORD id) {
        FILETIME start, end, kernel, user;
        if (WaitForSingleObject(process, 0) == WAIT_TIMEOUT &&
            GetProcessTimes(process, &start, &end, &kernel, &user) && Runs(process, ExecutablePath(server)))
            found.push_back({id, common::FileTimeUnits(start)});
    });
    return found;
}

std::vector<std::string> PathsRunning(const std::string& fileName) {
    std::vector<std::string> found;
    ForEachProcess(fileName, [&](HANDLE process, DWORD) {
        const std::string path = GetProcessPath(process);
        if (!path.empty())
            found.push_back(path);
    });
    return found;
}

Predecessors Predecessors::All() {
    Predecessors all;
    for (const Server server : kServers)
        all.Note(server);
    return all;
}

bool Predecessors::HaveSuccessor(Server server) const {
    const auto& old = old_[static_cast<std::size_t>(server)];
    return std::ranges::any_of(
        ProcessesOf(server), [&](const ProcessId& process) { return std::ranges::count(old, process) == 0; });
}

ProcessAges::Milliseconds ProcessAges::Age(const ProcessId& process, ULONGLONG now, ULONGLONG ticks) {
    constexpr ULONGLONG kUnitsOfAMillisecond = 10'000;
    const auto [known, isNew] = born_.try_emplace(process, ticks);
    if (isNew && now > process.created)
        known->second -= std::min(ticks, (now - process.created) / kUnitsOfAMillisecond);
    return Milliseconds(ticks - known->second);
}

void ProcessAges::Keep(const std::vector<ProcessId>& alive) {
    std::erase_if(born_, [&](const auto& known) { return std::ranges::count(alive, known.first) == 0; });
}

} // namespace modServerControl
