#pragma once

#include "gui/Form.h"

#include <cstdint>

/// Procedures over whole windows, of the tool and of others.
namespace modGUI {

/// Lets the system move the form as if its title bar were dragged; called from a press on its surface.
void DragForm(gui::Form& form);

/// Keeps the form above all windows that are not top-most themselves, or no longer.
void SetFormOnTop(gui::Form& form, bool on);

/// Hides or shows a window of any process without waiting for it. Returns what the system says of having
/// taken the order: 0 when there is no such window.
std::int16_t HideWindowAsync(HWND window);
std::int16_t ShowWindowAsyncNormal(HWND window);

} // namespace modGUI
