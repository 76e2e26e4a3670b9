#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace gui {

/// Gives each of the controls of `form` a tooltip whose id has a string resource. The tooltips go with the
/// form's window.
void AddToolTips(HWND form, const std::vector<HWND>& controls);

/// Gives the control of `form` this tooltip instead of the one that it may have.
void SetToolTip(HWND form, HWND control, const std::string& text);

} // namespace gui
