#include "Console.h"
#include "Trouble.h"

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int showCommand) {
    const bool quiet = GetEnvironmentVariableA(standin::kQuietVariable, nullptr, 0) > 0;
    const standin::Console console(instance, showCommand, quiet);
    MSG message;
    while (GetMessageA(&message, nullptr, 0, 0) > 0) {
        if (standin::HandleDialogMessage(message))
            continue;
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
    return 0;
}
