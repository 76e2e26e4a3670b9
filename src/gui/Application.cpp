#include "gui/Application.h"

#include "gui/BoxWindow.h"
#include "gui/Form.h"
#include "gui/FormSlot.h"
#include "gui/ToolTips.h"

namespace gui {

namespace {

bool ending = false;
int exitCodeOfEnd = 0;

} // namespace

void Dispatch(MSG& message) {
    RelayToToolTips(message);
    if (!Form::TranslateKey(message) && !BoxWindow::TranslateKey(message)) {
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
    ReleaseRetired();
}

Tasks& ToolTasks() {
    static Tasks tasks;
    return tasks;
}

int Run() {
    MSG message;
    while (!ending) {
        if (GetMessageA(&message, nullptr, 0, 0) > 0)
            Dispatch(message);
        else
            End(static_cast<int>(message.wParam));
    }
    ToolTasks().Cancel();
    return exitCodeOfEnd;
}

void End(int exitCode) {
    if (ending)
        return;
    ending = true;
    exitCodeOfEnd = exitCode;
    // Wakes a loop of the system's own (a message box, a menu) as well as ours.
    PostQuitMessage(exitCode);
}

} // namespace gui
