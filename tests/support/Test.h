#pragma once

#include "common/Files.h"
#include "common/RuntimeError.h"
#include "common/Text.h"
#include "support/TempFolder.h"
#include "support/Wait.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

/// What most tests need.
namespace support {

/// The number of the runtime error that `operation` raises, 0 when it raises none.
long ErrorNumber(const auto& operation) {
    try {
        operation();
    } catch (const RuntimeError& error) {
        return error.Number();
    }
    return 0;
}

} // namespace support
