#include "app/frmMainMenu.h"

#include "common/Handle.h"

namespace {

using MutexHandle = common::Handle<HANDLE, CloseHandle>;

} // namespace

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
    // Held until the end: whoever starts a second copy finds the name taken.
    const MutexHandle instance(CreateMutexA(nullptr, FALSE, "kTools.Instance"));
    const bool previousInstance = GetLastError() == ERROR_ALREADY_EXISTS;
    frmMainMenu mainMenu(previousInstance);
    mainMenu.Load();
    if (!gui::Ending())
        mainMenu.Show();
    return gui::Run();
}
