#include "app/frmMainMenu.h"

#include "common/Handle.h"
#include "gui/Aside.h"

#include <string_view>

namespace {

using MutexHandle = common::Handle<HANDLE, CloseHandle>;

gui::Task<> ShowWhenStarted(frmMainMenu& mainMenu, bool supervise) {
    co_await mainMenu.Started.Happened();
    supervise ? mainMenu.Supervise() : mainMenu.Show();
}

} // namespace

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR arguments, int) {
    // Held until the end: whoever starts a second copy finds the name taken.
    const MutexHandle instance(CreateMutexA(nullptr, FALSE, "kTools.Instance"));
    // It is also taken when a copy with more rights keeps it from us.
    const bool previousInstance = !instance || GetLastError() == ERROR_ALREADY_EXISTS;
    gui::Local<frmMainMenu> mainMenu(previousInstance);
    mainMenu->Load();
    gui::ToolTasks().Start(ShowWhenStarted(*mainMenu, std::string_view(arguments) == "/supervise"));
    const int exitCode = gui::Run();
    // A library that a call is still in cannot be taken down around it.
    if (gui::CallsAreAside())
        TerminateProcess(GetCurrentProcess(), static_cast<UINT>(exitCode));
    return exitCode;
}
