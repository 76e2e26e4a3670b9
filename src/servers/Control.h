#pragma once

#include "gui/Task.h"
#include "servers/Journal.h"
#include "servers/Servers.h"
#include "settings/clsINI.h"

#include <cstdint>
#include <functional>
#include <span>
#include <string>

namespace modServerControl {

/// Launches the server's executable, minimised, in KernoPath, which becomes the tool's own current folder,
/// and does not wait for it. 1 when it was launched; 0 when the file is missing, is no program or may not be
/// run.
std::int16_t Start(Server server);

/// Sweeps the servers' dialogs away, posts a close to the server's main window and sweeps again; for the zone
/// server the pause of ZoneShutdownPause comes before the second sweep. 1 when a close was posted, else 0; 0
/// too when the pause ends in its overflow, as it does at any hour but midnight.
gui::Task<std::int16_t> Shutdown(Server server);

/// Makes every main window of the server, and its application window, visible or invisible, without waiting
/// for the server. 1 when the application window was found too, else 0.
std::int16_t Show(Server server);
std::int16_t Hide(Server server);

/// Start, then SetPriority by the number under the server's priority key, where it has one, in whichever file
/// the caller keeps the priorities in; a text that is no number counts as 0. The priority goes to whatever
/// windows there are at that moment, so a server that has no window yet keeps its own. `asker` and `why` go
/// into the journal, with what came of it. Returns Start's status. Raises 6 when the number is out of the
/// 16-bit range, and the errors of reading the file; the server is started then.
std::int16_t StartWithPriority(Server server, const clsINI& priorities, journal::Asker asker,
                               const std::string& why = {});

/// Shutdown for somebody, which goes into the journal.
gui::Task<std::int16_t> ShutdownFor(journal::Asker asker, Server server);

/// Runs `action` for each of the servers, whatever it raises, and raises the first error then: the settings
/// of a server that cannot be read keep none of the others down.
void ForEach(std::span<const Server> servers, const std::function<void(Server)>& action);

} // namespace modServerControl
