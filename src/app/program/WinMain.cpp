#include "app/frmMainMenu.h"

#include "common/Handle.h"

namespace {

using MutexHandle = common::Handle<HANDLE, CloseHandle>;

} // namespace

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
    // Held until the end: whoever starts a second copy finds the name taken.
    const MutexHandle instance(CreateMutexA(nullptr, FALSE, "kTools.Instance"));
    // It is also taken when a copy with more rights keeps it from us.
    const bool previousInstance = !instance || GetLastError() == ERROR_ALREADY_EXISTS;
    frmMainMenu mainMenu(previousInstance);
    mainMenu.Load();
    if (!gui::Ending())
        mainMenu.Show();
    return gui::Run();
}
