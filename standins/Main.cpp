#include "Console.h"

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int showCommand) {
    const bool quiet = GetEnvironmentVariableA(standin::kQuietVariable, nullptr, 0) > 0;
    const standin::Console console(instance, showCommand, quiet);
    MSG message;
    while (GetMessageA(&message, nullptr, 0, 0) > 0) {
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
    // Open dialogs have threads of their own, which must not touch what the end of the program takes down.
    ExitProcess(0);
}
