#pragma once

#include <string>
#include <string_view>

/// What the tool did to the servers, and why: kTools\Logs\Supervision.log, for the operator who comes back to
/// it after days. One line for each event. A journal that cannot be written disturbs nobody.
namespace journal {

/// Who asked for what was done.
enum class Asker { Tray, Restarter, Detector, Address, Backup, Configurator };

/// Adds the line "[dd/mm/yy hh:mm:ss] tray: Login server shut down". Beyond 256 KB the file becomes
/// Supervision.1.log, what had that name Supervision.2.log, and so on; three old ones are kept.
void Write(Asker asker, std::string_view what);

/// The same for whoever has kept the path: what is written after the tool's folder was put elsewhere.
void WriteTo(const std::string& path, Asker asker, std::string_view what);

/// Full path of the file.
std::string Path();

/// The last lines of the journal, at most `count`; "" when there is none or it cannot be read.
std::string LastLines(int count);

} // namespace journal
