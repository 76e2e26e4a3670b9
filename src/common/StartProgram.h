#pragma once

#include "common/Handle.h"

#include <windows.h>

#include <optional>
#include <string>

namespace common {

using ProcessHandle = Handle<HANDLE, CloseHandle>;

/// How a program is started.
struct ProgramStart {
    std::string path{};        ///< of the program; where it is "", the first word of the command line counts
    std::string commandLine{}; ///< where it is "", the path in quotation marks
    std::string folder{};      ///< becomes the program's current one; where it is "", this program's own
    DWORD flags = 0;           ///< as CreateProcess takes them
    WORD show = SW_SHOWDEFAULT;
};

/// Starts a program and does not wait for it. Tries again, for a tenth of a second, where somebody has the
/// file open or the system fails in itself: no process is left then. Nothing when it cannot be started;
/// GetLastError tells why. Wine starts Linux programs too, and gives no process for them.
std::optional<ProcessHandle> StartProgram(ProgramStart start);

} // namespace common
