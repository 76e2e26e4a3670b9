#include "gui/Application.h"

#include <windows.h>

namespace gui {

namespace {

bool ending = false;
int exitCodeOfEnd = 0;

void Dispatch(MSG& message) {
    TranslateMessage(&message);
    DispatchMessageA(&message);
}

} // namespace

void DoEvents() {
    MSG message;
    while (!ending && PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
        if (message.message == WM_QUIT)
            End(static_cast<int>(message.wParam));
        else
            Dispatch(message);
    }
    if (ending)
        throw Leaving{};
}

int Run() {
    MSG message;
    while (!ending && GetMessageA(&message, nullptr, 0, 0) > 0)
        Dispatch(message);
    return exitCodeOfEnd;
}

void End(int exitCode) {
    if (ending)
        return;
    ending = true;
    exitCodeOfEnd = exitCode;
    // Wakes a loop that waits for a message; each loop tells the next one out by the flag.
    PostQuitMessage(exitCode);
}

bool Ending() {
    return ending;
}

} // namespace gui
