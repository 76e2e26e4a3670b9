#pragma once

#include <windows.h>

#include <string>

namespace gui {

/// The id of a box's text, as in the system's own.
constexpr int kBoxTextId = 0xFFFF;

/// Puts icon, text and buttons into the window of a message box, sizes it and places it in the middle of the
/// owner's screen. `style` takes the platform's MB_ values. The result is the top of the strip that holds the
/// buttons, in pixels.
int LayBox(HWND window, HFONT font, const std::string& text, unsigned style, HWND owner);

} // namespace gui
