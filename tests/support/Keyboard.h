#pragma once

#include <windows.h>

#include <initializer_list>

namespace support {

/// Presses a key as the keyboard does: the window with the focus gets it through the message loop's own
/// steps. `held` are keys such as VK_CONTROL that are down meanwhile.
void PressKey(int key, std::initializer_list<int> held = {});

} // namespace support
