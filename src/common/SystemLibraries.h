#pragma once

#include <windows.h>

#include <string_view>

namespace common {

/// Loads a library of Windows from the system's folder, and what it needs from there too; never one of the
/// same name beside the program. `name` is ASCII. Null when there is none.
HMODULE LoadSystemLibrary(std::string_view name);

} // namespace common
