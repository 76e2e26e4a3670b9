#pragma once

#include "gui/Task.h"

#include <functional>

namespace gui {

/// Thrown out of a wait when the tool is being left; it ends the wait and every handler around it. Not a
/// RuntimeError: an operation that swallows its own errors must not swallow this.
struct Leaving {};

/// Dispatches every message that is pending and returns: the one way for a long wait to yield. Timers, clicks
/// and other windows' events run inside it. Throws Leaving once the tool is being left.
void DoEvents();

/// Dispatches messages until `done` holds. Throws Leaving once the tool is being left.
void RunUntil(const std::function<bool()>& done);

/// While one lives, work is under way that no message box may hold up, although it yields: servers are down
/// and are to come up again. An error that can be told later is told later.
class Uninterrupted {
public:
    Uninterrupted() { ++count_; }
    ~Uninterrupted() { --count_; }
    Uninterrupted(const Uninterrupted&) = delete;
    Uninterrupted& operator=(const Uninterrupted&) = delete;

    static bool Any() { return count_ > 0; }

private:
    static inline int count_ = 0;
};

/// The tasks that belong to no window. They end when the tool is left.
Tasks& ToolTasks();

/// Dispatches messages until the tool is left; returns the exit code given to End.
int Run();

/// Leaves the tool: every message loop and every wait ends at once.
void End(int exitCode = 0);

/// True from End on.
bool Ending();

} // namespace gui
