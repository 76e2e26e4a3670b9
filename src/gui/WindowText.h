#pragma once

#include <windows.h>

#include <string>

namespace gui {

/// The whole text of one of our own windows; "" without a window. Other programs' windows may not answer.
std::string TextOf(HWND window);

} // namespace gui
