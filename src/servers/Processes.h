#pragma once

#include "servers/Servers.h"

#include <windows.h>

#include <array>
#include <chrono>
#include <map>
#include <string>
#include <vector>

/// The servers' processes, whether they show a window or not.
namespace modServerControl {

/// One process for good: the system gives the id of a process that has ended to another one.
struct ProcessId {
    DWORD id = 0;
    ULONGLONG created = 0; ///< by the system's clock, in units of 100 nanoseconds

    auto operator<=>(const ProcessId&) const = default;
};

/// The processes that run the server's executable in KernoPath and have not ended.
std::vector<ProcessId> ProcessesOf(Server server);

/// The full paths of programs with this file name that are running, those that can be asked.
std::vector<std::string> PathsRunning(const std::string& fileName);

/// The processes that servers had when they were told to close, for whoever starts them again.
class Predecessors {
public:
    /// Those of all servers at this moment.
    static Predecessors All();

    void Note(Server server) { old_[static_cast<std::size_t>(server)] = ProcessesOf(server); }

    /// The server was started since, and lives: it must not be started a second time.
    bool HaveSuccessor(Server server) const;

private:
    std::array<std::vector<ProcessId>, kServers.size()> old_;
};

/// Ages by a clock that cannot jump: the system's own is set by hand and by time servers.
class ProcessAges {
public:
    using Milliseconds = std::chrono::milliseconds;

    /// The process's age. What it had before it was first asked about can only be had from the system's
    /// clock, `now`, in the units of `created`; from then on `ticks` counts, the milliseconds since the
    /// system was started.
    Milliseconds Age(const ProcessId& process, ULONGLONG now, ULONGLONG ticks);
    /// Forgets all but these.
    void Keep(const std::vector<ProcessId>& alive);

private:
    std::map<ProcessId, ULONGLONG> born_; // in ticks
};

} // namespace modServerControl
