#pragma once

#include "gui/Task.h"

#include <windows.h>

#include <functional>

namespace gui {

/// Thrown out of a wait when the tool is being left; it ends the wait and every handler around it. Not a
/// RuntimeError: an operation that swallows its own errors must not swallow this.
struct Leaving {};

/// Hands a message of the queue to the window or the box that it is for.
void Dispatch(MSG& message);

/// Dispatches messages until `done` holds. Throws Leaving once the tool is being left.
void RunUntil(const std::function<bool()>& done);

/// The tasks that belong to no window. They end when the tool is left.
Tasks& ToolTasks();

/// Dispatches messages until the tool is left; returns the exit code given to End.
int Run();

/// Leaves the tool: every message loop and every wait ends at once.
void End(int exitCode = 0);

/// True from End on.
bool Ending();

} // namespace gui
