#pragma once

#include <chrono>
#include <functional>

namespace support {

/// Waits until `condition` holds, dispatching the messages of this thread meanwhile. False when it does not
/// hold within `limit`, which is generous because the machine may be busy.
bool WaitUntil(const std::function<bool()>& condition,
               std::chrono::milliseconds limit = std::chrono::seconds(30));

} // namespace support
