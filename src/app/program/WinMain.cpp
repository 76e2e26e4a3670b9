#include "app/frmMainMenu.h"
#include "app/InstanceMark.h"
#include "common/Files.h"
#include "gui/Aside.h"

#include <exception>
#include <string_view>

namespace {

/// In a box, or where there is no desktop for one, to whoever started the program.
void TellBeforeTheEnd(const std::string& reason) {
    std::string text = "Kerno Tools cannot start. " + reason;
    if (MessageBoxA(nullptr, text.c_str(), "Kerno Tools", MB_ICONERROR) > 0)
        return;
    text += "\r\nNo window can be shown here. Please start it on a desktop.\r\n";
    DWORD written = 0;
    WriteFile(GetStdHandle(STD_ERROR_HANDLE), text.c_str(), static_cast<DWORD>(text.size()), &written,
              nullptr);
}

gui::Task<> ShowWhenStarted(frmMainMenu& mainMenu, bool supervise) {
    co_await mainMenu.Started.Happened();
    supervise ? mainMenu.Supervise() : mainMenu.Show();
}

int Run(std::string_view arguments) {
    // Everything that is kept lies there: a folder that cannot be named right must not become another one.
    common::ProgramFolder();
    // Held until the end.
    const InstanceMark mark;
    gui::Local<frmMainMenu> mainMenu(mark.Taken());
    mainMenu->Load();
    gui::ToolTasks().Start(ShowWhenStarted(*mainMenu, arguments == "/supervise"));
    const int exitCode = gui::Run();
    // A library that a call is still in cannot be taken down around it.
    if (gui::CallsAreAside())
        TerminateProcess(GetCurrentProcess(), static_cast<UINT>(exitCode));
    return exitCode;
}

} // namespace

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR arguments, int) {
    try {
        return Run(arguments);
    } catch (const std::exception& error) {
        TellBeforeTheEnd(error.what());
        return 1;
    }
}
