#include "app/frmMainMenu.h"

#include "common/Handle.h"

#include <commctrl.h>

namespace {

using MutexHandle = common::Handle<HANDLE, CloseHandle>;

/// Loads what dialog templates name by window class.
void LoadControlClasses() {
    const INITCOMMONCONTROLSEX classes{sizeof classes, ICC_STANDARD_CLASSES | ICC_TAB_CLASSES |
                                                           ICC_TREEVIEW_CLASSES | ICC_BAR_CLASSES};
    InitCommonControlsEx(&classes);
}

} // namespace

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
    // Held until the end: whoever starts a second copy finds the name taken.
    const MutexHandle instance(CreateMutexA(nullptr, FALSE, "kTools.Instance"));
    const bool previousInstance = GetLastError() == ERROR_ALREADY_EXISTS;
    LoadControlClasses();
    frmMainMenu mainMenu(previousInstance);
    mainMenu.Load();
    if (!gui::Ending())
        mainMenu.Show();
    return gui::Run();
}
