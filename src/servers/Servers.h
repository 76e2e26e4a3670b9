#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

/// The three server programs as seen from outside: their windows, their processes, and what is done to them.
namespace modServerControl {

/// One of the three servers. What differs between them is in their Component; everything else is written
/// once.
enum class Server { Login, Character, Zone };

/// All three, in the order in which they are started, shut down and reported.
inline constexpr std::array kServers{Server::Login, Server::Character, Server::Zone};

/// What tells one server from another.
struct Component {
    const char* name;              ///< "Login", for texts
    const char* executable;        ///< file name below KernoPath
    const char* mainWindowClass;   ///< class of the window that shows the server's messages
    std::string_view titlePattern; ///< start of the main window's title as ReadTitle reads it; "#" is a digit
    std::string_view appTitleStart; ///< start of the application window's title as ReadTitle reads it
    std::string_view priorityKey;   ///< key of its priority index; empty where no start applies a priority
};

const Component& ComponentOf(Server server);

inline constexpr const char* kApplicationWindowClass = "TApplication";
inline constexpr const char* kMessageBoxClass = "TMemo";
inline constexpr const char* kTextFieldClass = "TEdit";
inline constexpr const char* kButtonClass = "TButton";
inline constexpr const char* kDialogClass = "#32770";
inline constexpr const char* kDialogTextClass = "Static";

/// Folder of the servers. File names are appended directly, so it must end in a backslash.
const std::string& KernoPath();
void KernoPath(const std::string& folder);

/// Folder of MySQL, ending in a backslash.
const std::string& MySQLPath();
void MySQLPath(const std::string& folder);

/// How a server's window is recognised.
inline constexpr std::int16_t kDetectByTitle = 0;
inline constexpr std::int16_t kDetectByProcess = 1;

/// kDetectByTitle or kDetectByProcess; with any other value no server is ever recognised.
std::int16_t ServerDetectionMethod();
void ServerDetectionMethod(std::int16_t method);

/// Full path of the server's executable: KernoPath directly followed by the file name.
std::string ExecutablePath(Server server);

/// "Kerno Login Server is currently running. Do you want to restart it ?", for the named server.
std::string RestartQuestion(Server server);

/// Asks whether a second instance is to be started beside the one that runs.
std::string SecondInstanceQuestion(Server server);

} // namespace modServerControl
