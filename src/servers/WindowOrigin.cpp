#include "servers/WindowOrigin.h"

#include "common/Handle.h"
#include "common/Text.h"
#include "servers/Detection.h"
#include "servers/ForeignWindows.h"

#include <windows.h>

namespace modServerControl {

namespace {

/// Without short names, so that two names of one folder compare equal.
std::string LongPath(const std::string& path) {
    std::string text(1024, '\0');
    const DWORD length = GetLongPathNameA(path.c_str(), text.data(), static_cast<DWORD>(text.size()));
    return length > 0 && length < text.size() ? text.substr(0, length) : path;
}

} // namespace

std::string OriginText(unsigned long process, const std::string& path, const std::string& folder) {
    const std::string number = "rocess " + std::to_string(process) + ", ";
    if (path.empty())
        return "P" + number + "whose program Windows does not tell";
    const std::string own = LongPath(path.substr(0, path.rfind('\\') + 1));
    return (common::EqualsIgnoreCase(own, LongPath(folder)) ? "P" : "NOT from the folder of the servers: p") +
           number + path;
}

std::string WindowOrigin(Server server) {
    DWORD id = 0;
    const HWND window = MainWindow(server);
    if (!window || !GetWindowThreadProcessId(window, &id))
        return std::string("No window of the ") + ComponentOf(server).name + " server";
    const common::Handle<HANDLE, CloseHandle> process(
        OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, id));
    return OriginText(id, process ? GetProcessPath(process.get()) : std::string(), KernoPath());
}

} // namespace modServerControl
