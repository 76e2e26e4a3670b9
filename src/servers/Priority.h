#pragma once

#include "servers/Servers.h"

#include <windows.h>

#include <cstdint>
#include <optional>
#include <string_view>

namespace modServerControl {

/// The priority class passed to the system for an index from 0 ("Realtime") to 5 ("Low"); nothing outside.
std::optional<DWORD> PriorityClassOf(int index);

/// The index of a priority class; 0 for a class that has none.
std::int16_t PriorityIndexOf(DWORD priorityClass);

/// The index that a setting's text stands for: the number at its start, 0 when there is none. Nothing for a
/// number that is no index.
std::optional<int> PriorityIndexIn(std::string_view text);

/// Gives the window's process the priority class; 1 when the system accepted it, else 0.
std::int16_t SetProcessPriority(HWND window, DWORD priorityClass);

/// The priority class of the window's process, 0 when it cannot be had.
DWORD GetProcessPriority(HWND window);

/// Gives every process that shows a main window of the server the priority of `index`, 0 to 5; another index
/// does nothing. Returns the status of the last window acted on, 0 for none.
std::int16_t SetPriority(Server server, int index);

/// Priority index of the server's first main window, 0 when there is none or its class has no index.
std::int16_t GetPriority(Server server);

} // namespace modServerControl
