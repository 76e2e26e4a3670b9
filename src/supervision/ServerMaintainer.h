#pragma once

#include "servers/Servers.h"
#include "settings/clsINI.h"

#include <array>

namespace supervision {

/// What the server maintainer is to do.
struct MaintainerSettings {
    bool enabled = false;
    /// The servers that it looks after, in the order of modServerControl::kServers.
    std::array<bool, modServerControl::kServers.size()> servers{};
};

/// Starts servers again that have gone. Knows nothing of backups: servers that a backup has shut down count
/// as gone.
class ServerMaintainer {
public:
    /// `priorities`: the file that holds the priorities of the servers.
    explicit ServerMaintainer(const clsINI& priorities) : priorities_(priorities) {}

    /// Looks once at each server, login first and zone last, and starts those that are to run and do not. A
    /// start is not waited for, nor made again while it lasts (at most a minute); a server that fails to
    /// start has its next try at the next call, and so has one that somebody has down for a restart. Raises
    /// the first error of reading the priorities, when all of them are started.
    void Maintain(const MaintainerSettings& settings) const;

private:
    const clsINI& priorities_;
};

} // namespace supervision
