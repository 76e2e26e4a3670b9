#pragma once

#include "gui/Task.h"
#include "servers/Journal.h"
#include "servers/Servers.h"
#include "settings/clsINI.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

/// Taking servers down and up again: the one way of the tray menu, the configurator, the error detector, the
/// IP change monitor and the backups by hand.
namespace supervision {

/// What differs between those who restart.
struct Restart {
    journal::Asker asker;
    std::optional<std::string> message;     ///< sent to the players first; empty: no message is sent
    std::function<gui::Task<>()> meanwhile; ///< work for the time that the servers are down; may be empty
    bool checkExecutables = false; ///< where one of the three executables is missing, no server is started
    std::vector<modServerControl::Server> servers{modServerControl::kServers.begin(),
                                                  modServerControl::kServers.end()};
};

/// Tells the players, shuts the servers down in order, and starts them again, login and character server with
/// the priority that `priorities` holds. Whether the message or a close reaches anybody makes no difference.
///
/// Owns the servers all the while: false, and nothing is done, when somebody owns one of them already. Skips
/// the start of a server that was shut down explicitly meanwhile, and of one that has a new process already.
/// One that did not close gets its second instance.
///
/// Takes seconds where the zone server runs. Raises what `meanwhile` raises, nothing more is started then,
/// and what reading the priorities raises, when all are started. A restart without `meanwhile` belongs to the
/// tool: it is finished although the window that asked for it is closed, and tells its error then.
gui::Task<bool> RestartAll(Restart restart, clsINI priorities);

/// True when the files of all three servers are in KernoPath.
bool HasAllExecutables();

/// What a user is told whose restart or start somebody else's is in the way of.
inline constexpr const char* kRestartUnderWay =
    "The servers are down for a restart or a backup at this moment, and come up again by themselves.";

} // namespace supervision
