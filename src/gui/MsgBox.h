#pragma once

#include <windows.h>

#include <string>

namespace gui {

/// The tool's own title, for messages that belong to no window.
inline constexpr const char* kApplicationTitle = "kTools";

/// A message box above `owner` (null: the active window); `style` takes the platform's MB_ values. Returns
/// the id of the button. Throws Leaving when the tool was left while the box was open.
int MsgBox(const std::string& text, unsigned style = MB_OK, const std::string& title = kApplicationTitle,
           HWND owner = nullptr);

} // namespace gui
