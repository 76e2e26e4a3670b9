#pragma once

#include <chrono>
#include <cstdint>
#include <functional>

namespace gui {

/// The number of one wait of one task. 0 is none.
using WaitId = std::uint32_t;

/// `resume` is called from the message loop, once, after one of the procedures below has waked the number.
WaitId BeginWait(std::function<void()> resume);
/// Nothing wakes the number any more.
void ForgetWait(WaitId id);

/// From any thread: the wait is over. Nothing happens when it is forgotten.
void Wake(WaitId id);
/// The wait is over once the messages, clicks, paintings and timers that are due now have had their turn.
void WakeAfterOthers(WaitId id);
/// The wait is over when the time has passed.
void WakeAfter(WaitId id, std::chrono::milliseconds time);

} // namespace gui
