#pragma once

#include <chrono>
#include <cstdint>
#include <functional>

namespace support {

/// Waits until `condition` holds, dispatching the messages of this thread meanwhile. False when it does not
/// hold within `limit`, which is generous because the machine may be busy.
bool WaitUntil(const std::function<bool()>& condition,
               std::chrono::milliseconds limit = std::chrono::seconds(30));

/// Runs `action` every 10 milliseconds while the object lives and somebody dispatches this thread's messages:
/// a wait, a modal form, a message box.
class Meanwhile {
public:
    explicit Meanwhile(std::function<void()> action);
    ~Meanwhile();
    Meanwhile(const Meanwhile&) = delete;

private:
    std::uintptr_t timer_;
};

} // namespace support
