#include "gui/Application.h"

#include "gui/BoxWindow.h"
#include "gui/Form.h"
#include "gui/FormSlot.h"

namespace gui {

namespace {

bool ending = false;
int exitCodeOfEnd = 0;

} // namespace

void Dispatch(MSG& message) {
    if (!Form::TranslateKey(message) && !BoxWindow::TranslateKey(message)) {
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
    ReleaseRetired();
}

void RunUntil(const std::function<bool()>& done) {
    MSG message;
    while (!ending && !done()) {
        if (GetMessageA(&message, nullptr, 0, 0) > 0)
            Dispatch(message);
        else
            End(static_cast<int>(message.wParam));
    }
    if (ending)
        throw Leaving{};
}

Tasks& ToolTasks() {
    static Tasks tasks;
    return tasks;
}

int Run() {
    try {
        RunUntil([] { return false; });
    } catch (const Leaving&) {
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

bool Ending() {
    return ending;
}

} // namespace gui
