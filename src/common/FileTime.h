#pragma once

#include <windows.h>

#include <cstdint>

namespace common {

/// A file time in its units of 100 nanoseconds, and back.
inline std::uint64_t FileTimeUnits(const FILETIME& time) {
    return std::uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime;
}
inline FILETIME FileTimeOf(std::uint64_t units) {
    return {.dwLowDateTime = static_cast<DWORD>(units), .dwHighDateTime = static_cast<DWORD>(units >> 32)};
}

} // namespace common
