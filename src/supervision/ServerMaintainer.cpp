#include "supervision/ServerMaintainer.h"

#include "servers/modServerControl.h"

namespace supervision {

void ServerMaintainer::Maintain(const MaintainerSettings& settings) const {
    if (!settings.enabled)
        return;
    modServerControl::ForEach(modServerControl::kServers, [&](modServerControl::Server server) {
        if (!settings.servers[static_cast<std::size_t>(server)] || modServerControl::IsRunning(server))
            return;
        // Owned for as long as it is looked at and launched: another copy of the tool looks after it too.
        const auto ownership = modServerControl::Ownership::Take({&server, 1});
        // One that was launched a moment ago must not be launched again because it takes its time: two
        // instances would write to the same database.
        if (ownership && !modServerControl::IsStarting(server) && !modServerControl::IsRunning(server))
            modServerControl::StartWithPriority(server, priorities_, journal::Asker::Restarter, "gone");
    });
}

} // namespace supervision
