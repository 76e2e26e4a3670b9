#include "supervision/ServerMaintainer.h"

#include "servers/modServerControl.h"

namespace supervision {

void ServerMaintainer::Maintain(const MaintainerSettings& settings) const {
    if (!settings.enabled)
        return;
    for (std::size_t i = 0; i < settings.servers.size(); ++i)
        if (settings.servers[i] && !modServerControl::IsRunning(modServerControl::kServers[i]))
            modServerControl::StartWithPriority(modServerControl::kServers[i], priorities_);
}

} // namespace supervision
