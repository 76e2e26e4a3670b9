#pragma once

#include "gui/TaskWaits.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <stdexcept>
#include <type_traits>

namespace support {

/// Dispatches the messages of this thread that are pending; none once the tool was left.
void DispatchPending();
bool ToolWasLeft();

/// Waits until `condition` holds, dispatching the messages of this thread meanwhile. False when it does not
/// hold within `limit`, which is generous because the machine may be busy, or before the tool is left.
bool WaitUntil(const std::function<bool()>& condition,
               std::chrono::milliseconds limit = std::chrono::seconds(30));

/// Waits until no task of any window or of the tool is under way: what a press set going is over then, its
/// boxes answered. False when that does not happen within `limit`.
bool Settle(std::chrono::milliseconds limit = std::chrono::seconds(30));

/// Runs a task to its end, dispatching the messages of this thread meanwhile; returns its result or raises
/// what ended it. Raises std::runtime_error when it is not over within `limit`.
template <class T> T Run(gui::Task<T> task, std::chrono::milliseconds limit = std::chrono::seconds(60));

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

namespace detail {

inline gui::Task<> Keep(gui::Task<> task, std::optional<char>& kept) {
    co_await std::move(task);
    kept = 1;
}

template <class T> gui::Task<> Keep(gui::Task<T> task, std::optional<T>& kept) {
    T result = co_await std::move(task);
    kept.emplace(std::move(result));
}

} // namespace detail

template <class T> T Run(gui::Task<T> task, std::chrono::milliseconds limit) {
    std::optional<std::conditional_t<std::is_void_v<T>, char, T>> kept;
    std::exception_ptr error;
    bool over = false;
    gui::Tasks tasks;
    tasks.Start(detail::Keep(std::move(task), kept), [&](std::exception_ptr raised) {
        error = raised;
        over = true;
    });
    if (!WaitUntil([&] { return over; }, limit))
        throw std::runtime_error("the task is not over in time");
    if (error)
        std::rethrow_exception(error);
    if constexpr (!std::is_void_v<T>)
        return std::move(*kept);
}

} // namespace support
