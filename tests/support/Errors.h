#pragma once

#include "common/RuntimeError.h"

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
