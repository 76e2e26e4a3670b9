#include "common/StartProgram.h"

#include "common/Persist.h"

namespace common {

std::optional<ProcessHandle> StartProgram(ProgramStart start) {
    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    if (start.show != SW_SHOWDEFAULT) {
        startup.dwFlags = STARTF_USESHOWWINDOW;
        startup.wShowWindow = start.show;
    }
    // In quotation marks, or the program would take a blank in its path for the end of it.
    if (start.commandLine.empty())
        start.commandLine = '"' + start.path + '"';
    PROCESS_INFORMATION started{};
    const auto orNull = [](std::string& text) { return text.empty() ? nullptr : text.data(); };
    const bool isStarted = Persist(
        [&] {
            return CreateProcessA(orNull(start.path), start.commandLine.data(), nullptr, nullptr, FALSE,
                                  start.flags, nullptr, orNull(start.folder), &startup, &started) != 0;
        },
        [](DWORD code) { return code == ERROR_SHARING_VIOLATION || code == ERROR_INTERNAL_ERROR; });
    if (!isStarted)
        return {};
    const ProcessHandle thread(started.hThread);
    return ProcessHandle(started.hProcess);
}

} // namespace common
