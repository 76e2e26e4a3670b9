#pragma once

#include "common/Handle.h"
#include "servers/Servers.h"

#include <windows.h>

#include <optional>
#include <span>
#include <utility>
#include <vector>

/// Who has servers down and is about to start them again. Told by named objects of the system, so that every
/// copy of the tool that works on the same server folder sees it, and so that it ends with the process that
/// owns, however that ends.
namespace modServerControl {

using EventHandle = common::Handle<HANDLE, CloseHandle>;

/// Owns servers while it lives: nobody else of the tool starts or restarts one of them.
class Ownership {
public:
    /// Owns all of the servers; nothing when somebody owns one of them already.
    static std::optional<Ownership> Take(std::span<const Server> servers);

    /// True when somebody has shut the server down since, to leave it down.
    bool StartIsCancelled(Server server) const;

private:
    std::vector<std::pair<Server, EventHandle>> owned_;
};

/// True while somebody owns the server, in this copy of the tool or in another.
bool IsOwned(Server server);

/// Takes the start from whoever owns the server. Nothing happens when nobody does.
void CancelStart(Server server);

/// A timed backup has the servers down while it lives. It does not own them: the server restarter may start
/// them meanwhile, and the backup's next second shuts them down again.
class BackupPhase {
public:
    BackupPhase();
    /// True while one lives in some copy of the tool.
    static bool IsOn();

private:
    EventHandle mark_;
};

} // namespace modServerControl
