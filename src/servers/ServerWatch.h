#pragma once

#include "servers/Processes.h"
#include "servers/Servers.h"

#include <windows.h>

#include <array>
#include <deque>
#include <map>
#include <string>

namespace modServerControl {

/// What a server is doing.
enum class Condition { Gone, Starting, Running, Hung, Dialog, Restarting };

/// What was seen of a server at one look.
struct Sight {
    Condition condition = Condition::Gone;
    bool hasMoreRights = false; ///< than the tool, which can then neither close it nor set its priority
    ULONGLONG created = 0;      ///< start of the process that was seen, by the system's clock; 0 for none
    std::string dialog{};       ///< title of the dialog that it shows
    std::string stranger{};     ///< file name of the program, not of the server's folder, whose window it is
};

Sight LookAt(Server server);

/// Remembers since when each server has been in its condition.
class ServerWatch {
public:
    /// Looks at the server and tells in a line what it does, since when, and when that was seen: "Login
    /// server: running since 14:03:10; checked 14:05:12".
    std::string Line(Server server);

private:
    struct Known {
        Condition condition = Condition::Gone;
        SYSTEMTIME since{};
        bool seen = false;
    };
    std::array<Known, kServers.size()> known_;
};

/// The line for what was seen. `since` and `checked` are local times; `launches` is the number within the
/// last ten minutes.
std::string LiveLine(Server server, const Sight& sight, const SYSTEMTIME& since, const SYSTEMTIME& checked,
                     int launches);

/// When the tool launched servers. A server that is launched again and again crashes, whatever it says.
class LaunchHistory {
public:
    static constexpr int kMany = 5;

    /// Times are milliseconds since the system was started.
    void Note(Server server, ULONGLONG now);
    /// The launches of the last ten minutes.
    int Recent(Server server, ULONGLONG now) const;

private:
    /// By the executable: the servers of another folder are other ones.
    std::map<std::string, std::deque<ULONGLONG>> launches_;
};

/// The tool's own.
LaunchHistory& Launches();

} // namespace modServerControl
