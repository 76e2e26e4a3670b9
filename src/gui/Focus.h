#pragma once

#include <windows.h>

namespace gui {

/// Moves the keyboard focus on to the next control of its form when it is in `window` or in a part of it:
/// what is about to be disabled or hidden must not keep it, or no key would reach anything any more.
void LeaveFocus(HWND window);

/// Whether the keyboard focus is in the window or in a part of it.
bool HasFocus(HWND window);

/// Gives the keyboard to the first control in the window that can have it; false when there is none.
bool EnterFocus(HWND window);

/// Gives the keyboard to the form's first control that can have it when none has, because the one that had it
/// was disabled or hidden while another window was in front.
void RegainFocus(HWND form);

} // namespace gui
