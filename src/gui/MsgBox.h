#pragma once

#include "gui/Task.h"

#include <windows.h>

#include <string>

namespace gui {

/// The tool's own title, for messages that belong to no window.
inline constexpr const char* kApplicationTitle = "kTools";

/// A message box above `owner` (null: the active window), which takes no input meanwhile; `style` takes the
/// platform's MB_ values. The result is the id of the button, or 0 when the box went with its owner.
/// Everything else of the tool goes on while the box is open.
Task<int> MsgBox(std::string text, unsigned style = MB_OK, std::string title = kApplicationTitle,
                 HWND owner = nullptr);

/// Shows such a box as a task of the tool and goes on. One with the same words that is shown already does not
/// come again.
void Tell(const std::string& text, unsigned style = MB_OK, const std::string& title = kApplicationTitle);

} // namespace gui
