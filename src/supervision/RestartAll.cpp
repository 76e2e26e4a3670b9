#include "supervision/RestartAll.h"

#include "common/Files.h"
#include "gui/Application.h"
#include "servers/modServerControl.h"

#include <algorithm>

namespace supervision {

void RestartAll(const Restart& restart, const clsINI& priorities) {
    const gui::Uninterrupted uninterrupted;
    if (restart.message)
        modServerControl::SendPlayerMessage(*restart.message);
    modServerControl::ShutdownAll();
    if (restart.meanwhile)
        restart.meanwhile();
    // Asked after the shutdown: a folder that is being replaced by a new version stays down.
    if (restart.checkExecutables && !HasAllExecutables())
        return;
    modServerControl::StartAllWithPriority(priorities);
}

bool HasAllExecutables() {
    return std::ranges::all_of(modServerControl::kServers, [](modServerControl::Server server) {
        return common::FileExists(modServerControl::ExecutablePath(server));
    });
}

} // namespace supervision
