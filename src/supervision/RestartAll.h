#pragma once

#include "settings/clsINI.h"

#include <functional>
#include <optional>
#include <string>

/// Taking the whole suite down and up again: what the error detector, the IP change monitor and the backups
/// have in common.
namespace supervision {

/// What differs between those who restart the suite.
struct Restart {
    std::optional<std::string> message; ///< sent to the players first; empty: no message is sent
    std::function<void()> meanwhile;    ///< work for the time that the servers are down; may be empty
    bool checkExecutables = false; ///< where one of the three executables is missing, no server is started
};

/// Tells the players, shuts the login, character and zone server down, and starts the three again, login and
/// character server with the priority that `priorities` holds. Whether the message or a close reaches anybody
/// makes no difference.
///
/// Takes seconds where the zone server runs, dispatching messages meanwhile. Raises what `meanwhile` and
/// reading the priorities raise; nothing more is started then.
void RestartAll(const Restart& restart, const clsINI& priorities);

/// True when the files of all three servers are in KernoPath.
bool HasAllExecutables();

} // namespace supervision
