#pragma once

#include "servers/Servers.h"

#include <string>

namespace modServerControl {

/// Tells what program is behind the window that the server is read from, which any program may have given the
/// right class and title: "Process 1234, C:\Kerno\kLogin.exe", with a mark where that is not in the
/// servers' folder.
std::string WindowOrigin(Server server);

/// The sentence for a process; `path` is "" where the system does not tell it, `folder` ends in a backslash.
std::string OriginText(unsigned long process, const std::string& path, const std::string& folder);

} // namespace modServerControl
