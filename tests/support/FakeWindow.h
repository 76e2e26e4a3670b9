#pragma once

#include "common/Handle.h"

#include <windows.h>

#include <string>

namespace support {

using WindowHandle = common::Handle<HWND, DestroyWindow>;

/// A window of the test program with a server's class and any title.
inline WindowHandle FakeWindow(const char* windowClass, const std::string& title,
                               WNDPROC procedure = DefWindowProcA) {
    WNDCLASSA kind{};
    kind.lpfnWndProc = DefWindowProcA;
    kind.lpszClassName = windowClass;
    RegisterClassA(&kind);
    WindowHandle window(CreateWindowExA(0, windowClass, title.c_str(), WS_POPUP, 0, 0, 9, 9, nullptr, nullptr,
                                        nullptr, nullptr));
    SetWindowLongPtrA(window.get(), GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(procedure));
    return window;
}

/// A dialog of the test program with a text; a close ends it.
inline WindowHandle DialogWindow(const std::string& title) {
    WindowHandle dialog(CreateWindowExA(0, "#32770", title.c_str(), WS_POPUP | WS_CAPTION, 0, 0, 99, 99,
                                        nullptr, nullptr, nullptr, nullptr));
    SetWindowLongPtrA(dialog.get(), GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(DefWindowProcA));
    CreateWindowExA(0, "Static", "Really close?", WS_CHILD, 0, 0, 9, 9, dialog.get(), nullptr, nullptr,
                    nullptr);
    return dialog;
}

} // namespace support
