#include "support/Keyboard.h"

#include "gui/Form.h"

namespace support {

void PressKey(int key, std::initializer_list<int> held) {
    BYTE before[256];
    GetKeyboardState(before);
    BYTE keys[256]{};
    for (const int each : held)
        keys[each] = 0x80;
    SetKeyboardState(keys);
    // F10 and what is pressed with Alt are the system's keys; let go, they would open the menu bar, which
    // waits for the next key.
    const bool system = key == VK_F10 || keys[VK_MENU];
    for (const bool down : {true, false}) {
        if (system && !down)
            break;
        MSG message{};
        message.hwnd = GetFocus();
        message.message = system ? (down ? WM_SYSKEYDOWN : WM_SYSKEYUP) : (down ? WM_KEYDOWN : WM_KEYUP);
        message.wParam = static_cast<WPARAM>(key);
        message.lParam = (down ? 1 : static_cast<LPARAM>(0xC0000001)) | (keys[VK_MENU] ? 1 << 29 : 0);
        if (!message.hwnd)
            break;
        if (!gui::Form::TranslateKey(message)) {
            TranslateMessage(&message);
            DispatchMessageA(&message);
        }
        // The characters that came of it, while the held keys still are.
        MSG made;
        while (PeekMessageA(&made, nullptr, WM_CHAR, WM_DEADCHAR, PM_REMOVE) ||
               PeekMessageA(&made, nullptr, WM_SYSCHAR, WM_SYSDEADCHAR, PM_REMOVE))
            if (!gui::Form::TranslateKey(made))
                DispatchMessageA(&made);
    }
    SetKeyboardState(before);
}

} // namespace support
