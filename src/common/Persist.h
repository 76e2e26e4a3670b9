#pragma once

#include <windows.h>

namespace common {

/// Calls `attempt` until it succeeds, or fails for a reason that `passes` does not take for a passing one, or
/// has failed for a tenth of a second. False when it fails; GetLastError tells why. Virus scanners and
/// indexers hold a fresh file for a moment, and so does who replaces one; their moment must cost nobody a
/// file or a server.
bool Persist(const auto& attempt, const auto& passes) {
    constexpr int kAttempts = 5;
    constexpr DWORD kPause = 20;
    for (int count = 1;; ++count) {
        if (attempt())
            return true;
        const DWORD code = GetLastError();
        if (count == kAttempts || !passes(code)) {
            SetLastError(code);
            return false;
        }
        Sleep(kPause);
    }
}

} // namespace common
