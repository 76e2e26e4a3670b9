#pragma once

#include "gui/Task.h"

#include <windows.h>

namespace gui {

/// Hands a message of the queue to the window or the box that it is for.
void Dispatch(MSG& message);

/// The tasks that belong to no window. They end when the tool is left.
Tasks& ToolTasks();

/// Dispatches messages until the tool is left; returns the exit code given to End.
int Run();

/// Leaves the tool: the message loop ends, and every task ends where it waits.
void End(int exitCode = 0);

} // namespace gui
