#pragma once

#include "gui/Application.h"
#include "gui/Task.h"

#include <exception>
#include <optional>

namespace gui {

/// Runs a task to its end, dispatching messages where it waits, and returns its result: for those who are no
/// task themselves. Throws Leaving once the tool is being left.
inline void RunNow(Task<> task) {
    Tasks tasks;
    bool over = false;
    std::exception_ptr error;
    tasks.Start(std::move(task), [&](std::exception_ptr ended) {
        over = true;
        error = ended;
    });
    if (!over)
        RunUntil([&over] { return over; });
    if (error)
        std::rethrow_exception(error);
}

namespace detail {

template <class T> Task<> Keep(Task<T> task, std::optional<T>& result) {
    T kept = co_await std::move(task);
    result.emplace(std::move(kept));
}

} // namespace detail

template <class T> T RunNow(Task<T> task) {
    std::optional<T> result;
    RunNow(detail::Keep(std::move(task), result));
    return std::move(*result);
}

} // namespace gui
