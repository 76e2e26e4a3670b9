#pragma once

#include "common/RuntimeError.h"

namespace dbsetup {

/// Titles of the wizard's message boxes.
inline constexpr const char* kTitle = "Kerno Tools :: MySQL Setup";
inline constexpr const char* kErrorTitle = "Kerno Tools :: MySQL Setup Error";

/// An error as the wizard words it.
inline std::string ErrorMessage(const RuntimeError& error) {
    return "Error Number [" + std::to_string(error.Number()) + "] " + error.Description();
}

} // namespace dbsetup
