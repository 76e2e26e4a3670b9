#include "servers/Priority.h"

#include "common/Handle.h"
#include "common/Numbers.h"
#include "common/RuntimeError.h"
#include "servers/Detection.h"

#include <algorithm>
#include <array>

namespace modServerControl {

namespace {

using Process = common::Handle<HANDLE, CloseHandle>;

constexpr DWORD kAllAccess = 0x1F0FFF;

// "Above Normal" is the sign-extended value and not ABOVE_NORMAL_PRIORITY_CLASS: the system refuses it, and a
// process that is above normal reads as index 0. Operators' stored indexes count on both.
constexpr std::array<DWORD, 6> kPriorityClasses{
    REALTIME_PRIORITY_CLASS, HIGH_PRIORITY_CLASS,         0xFFFF8000,
    NORMAL_PRIORITY_CLASS,   BELOW_NORMAL_PRIORITY_CLASS, IDLE_PRIORITY_CLASS};

Process OpenProcessOf(HWND window) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    return Process(process ? OpenProcess(kAllAccess, TRUE, process) : nullptr);
}

} // namespace

std::optional<DWORD> PriorityClassOf(int index) {
    if (index < 0 || index >= static_cast<int>(kPriorityClasses.size()))
        return {};
    return kPriorityClasses[static_cast<std::size_t>(index)];
}

std::int16_t PriorityIndexOf(DWORD priorityClass) {
    const auto found = std::ranges::find(kPriorityClasses, priorityClass);
    return found == kPriorityClasses.end() ? std::int16_t{0}
                                           : static_cast<std::int16_t>(found - kPriorityClasses.begin());
}

std::optional<int> PriorityIndexIn(std::string_view text) {
    try {
        const int index = common::CInt(common::Val(text));
        return PriorityClassOf(index) ? std::optional(index) : std::nullopt;
    } catch (const RuntimeError&) {
        return std::nullopt;
    }
}

std::int16_t SetProcessPriority(HWND window, DWORD priorityClass) {
    const Process process = OpenProcessOf(window);
    return process && SetPriorityClass(process.get(), priorityClass) ? 1 : 0;
}

DWORD GetProcessPriority(HWND window) {
    const Process process = OpenProcessOf(window);
    return process ? GetPriorityClass(process.get()) : 0;
}

std::int16_t SetPriority(Server server, int index) {
    const auto priorityClass = PriorityClassOf(index);
    if (!priorityClass)
        return 0;
    std::int16_t status = 0;
    FindServerWindow(server, ComponentOf(server).mainWindowClass, [&](HWND window) {
        status = SetProcessPriority(window, *priorityClass);
        return false;
    });
    return status;
}

std::int16_t GetPriority(Server server) {
    return PriorityIndexOf(GetProcessPriority(MainWindow(server)));
}

} // namespace modServerControl
