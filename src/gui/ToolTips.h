#pragma once

#include <windows.h>

#include <vector>

namespace gui {

/// Gives each of the controls of `form` a tooltip whose id has a string resource. The tooltips go with the
/// form's window.
void AddToolTips(HWND form, const std::vector<HWND>& controls);

} // namespace gui
