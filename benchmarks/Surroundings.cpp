#include "Surroundings.h"

#include "servers/modServerControl.h"

#include <stdexcept>

namespace bench {

namespace {

using Kind = ForeignWindows::Kind;

constexpr const char* kForeignTitle = "Some other program's window";

struct KindOfWindows {
    Kind kind;
    const char* helper;
    const char* windowClass;
    const char* name;
};
constexpr KindOfWindows kKinds[] = {
    {Kind::Other, "windows", "SomeOtherProgram", "other windows"},
    {Kind::ZoneLike, "zone-class-windows", "TfrmMain", "of zone's class"},
    {Kind::Dialogs, "dialogs", modServerControl::kDialogClass, "other dialogs"},
};

const KindOfWindows& Of(Kind kind) {
    return kKinds[static_cast<std::size_t>(kind)];
}

void MakeForeignWindows(const char* windowClass) {
    WNDCLASSA registered{};
    registered.lpfnWndProc = DefWindowProcA;
    registered.hInstance = GetModuleHandleA(nullptr);
    registered.lpszClassName = windowClass;
    RegisterClassA(&registered);
    for (int i = 0; i < kForeignWindows; ++i)
        CreateWindowExA(WS_EX_TOOLWINDOW, windowClass, kForeignTitle, WS_POPUP | WS_CAPTION, 0, 0, 100, 50,
                        nullptr, nullptr, registered.hInstance, nullptr);
    MSG message;
    while (GetMessageA(&message, nullptr, 0, 0) > 0)
        DispatchMessageA(&message);
}

const Helper helpers[] = {
    {kKinds[0].helper, [] { MakeForeignWindows(kKinds[0].windowClass); }},
    {kKinds[1].helper, [] { MakeForeignWindows(kKinds[1].windowClass); }},
    {kKinds[2].helper, [] { MakeForeignWindows(kKinds[2].windowClass); }},
};

int CountForeignWindows() {
    int count = 0;
    HWND window = nullptr;
    while ((window = FindWindowExA(nullptr, window, nullptr, kForeignTitle)))
        ++count;
    return count;
}

} // namespace

ForeignWindows::ForeignWindows(Kind kind) : process_(HelperCommand(Of(kind).helper)) {
    WaitFor("foreign windows", [] { return CountForeignWindows() == kForeignWindows; });
}

std::string ForeignWindows::Name(Kind kind) {
    return Of(kind).name;
}

void Surroundings::LaunchSuite() {
    for (const modServerControl::Server server : modServerControl::kServers) {
        if (!servers.Launch(server))
            throw std::runtime_error("a stand-in server does not start");
        WaitFor("a server", [&] { return modServerControl::IsRunning(server); });
    }
}

} // namespace bench
