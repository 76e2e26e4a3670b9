#pragma once

#include "servers/Servers.h"
#include "StandinCommands.h"
#include "support/TempFolder.h"

#include <windows.h>

#include <string>

namespace support {

using modServerControl::Server;

/// A server folder with the three stand-in servers, to which KernoPath points while the object lives; method
/// 0 recognises them. The stand-ins do nothing by themselves until they are told to. Whatever runs from the
/// folder at the end is ended.
class ServerFolder {
public:
    ServerFolder();
    ~ServerFolder();

    /// Full path, ending in a backslash, with a blank in it.
    const std::string& Path() const { return path_; }

    /// Starts the server, also under another file name, and returns its main window; null when none came.
    HWND Launch(Server server, const std::string& fileName = {}) const;

    /// The main window, application window and first child of a class in the main window, whatever the
    /// current detection method: by the process that runs from this folder. Null for none.
    HWND MainWindow(Server server) const;
    HWND AppWindow(Server server) const;
    HWND Child(Server server, const char* windowClass) const;

    /// The number of programs of the server's file name that run from this folder.
    int Instances(Server server) const;
    bool IsRunning(Server server) const { return Instances(server) > 0; }

    /// Hands a command to the server, or to a stand-in by its main window, without waiting for it.
    void Command(Server server, standin::Command command, int number = 1) const;
    static void Command(HWND window, standin::Command command, int number = 1);

    /// The number of dialogs that programs of this folder show.
    int DialogCount() const;

    /// Ends the server at once, and all of them.
    void Kill(Server server) const;
    void KillAll() const;

private:
    std::string ImageOf(Server server) const;

    TempFolder temp_;
    std::string path_;
};

/// Text of a window of another program, asked of the window itself; "" when it does not answer.
std::string TextOf(HWND window);

/// Gives the program of a window more rights than this one has: only what every program may ask of any, and
/// its end, is left.
void TakeRights(HWND window);

/// Ends the program of a window at once.
void KillOwner(HWND window);

/// Gives a window of another program a text; false when it does not answer.
bool SetTextOf(HWND window, const std::string& text);

} // namespace support
