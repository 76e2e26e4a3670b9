#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace gui {

/// What a screen reader calls each of these controls of a form: the caption of a button; for what has none
/// the label to the left of it or above it, with the heading of the box that it is in ("Login Database, Login
/// Name"). A second control behind the same label is called by its tooltip. Empty when nothing names it.
std::vector<std::string> AccessibleNamesOf(HWND form, const std::vector<HWND>& controls);

/// Tells screen readers the name of a control that has no caption, until ForgetAccessibleName. Where the
/// system has no service for that, they go on guessing.
void SetAccessibleName(HWND control, const std::string& name);
/// To be called before the control's window goes.
void ForgetAccessibleName(HWND control);

} // namespace gui
