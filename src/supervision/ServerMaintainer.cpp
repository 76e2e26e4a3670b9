#include "supervision/ServerMaintainer.h"

#include "servers/modServerControl.h"

namespace supervision {

void ServerMaintainer::Maintain(const MaintainerSettings& settings) const {
    if (!settings.enabled)
        return;
    for (std::size_t i = 0; i < settings.servers.size(); ++i) {
        const modServerControl::Server server = modServerControl::kServers[i];
        // One that was launched a moment ago must not be launched again because it takes its time: two
        // instances would write to the same database.
        if (settings.servers[i] && !modServerControl::IsRunning(server) &&
            !modServerControl::IsStarting(server))
            modServerControl::StartWithPriority(server, priorities_);
    }
}

} // namespace supervision
