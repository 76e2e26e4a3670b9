#pragma once

#include "servers/Servers.h"

#include <windows.h>

#include <functional>
#include <string>
#include <string_view>

namespace modServerControl {

/// Does a main window's title, as ReadTitle reads it, belong to the server?
bool IsServerTitle(Server server, std::string_view title);

/// Does an application window's title, as ReadTitle reads it, belong to the server?
bool IsAppTitle(Server server, std::string_view title);

/// Is this file name, or path, the server's executable? The name may stand anywhere in it; letter case
/// counts.
bool IsServerModule(Server server, std::string_view module);

/// True when the window is a main window of the server by the current detection method.
bool IsServerWindow(Server server, HWND window);

/// True when the window is an application window of the server by the current detection method.
bool IsAppWindow(Server server, HWND window);

/// Calls `visit` for every top-level window of the class that passes IsServerWindow, until it returns true.
/// Returns the window it stopped at, or null.
HWND FindServerWindow(Server server, const char* windowClass, const std::function<bool(HWND)>& visit);

/// The server's main window: the first of its main window class that is recognised, or null.
HWND MainWindow(Server server);

/// True when the server has a main window.
bool IsRunning(Server server);

/// True while a process of the executable below KernoPath is less than a minute old and shows no window that
/// is recognised: a server reads its files first, and a zone server's window has no clock at once.
bool IsStarting(Server server);

/// The state of the three servers, for the tray: "Kerno Tools :: [Login(Active) Character(Inactive) ...]".
std::string ServerStatusText();

/// What the tray says when the suite is down.
inline constexpr const char* kKernoInactive = "Kerno Tools :: [Kerno Inactive]";

/// kKernoInactive when no server runs, else ServerStatusText.
std::string TrayStatusText();

} // namespace modServerControl
