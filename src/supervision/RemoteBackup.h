#pragma once

#include "gui/Task.h"
#include "servers/Databases.h"
#include "settings/clsINI.h"
#include "supervision/clsMySQLCopyDatabase.h"

#include <cstdint>
#include <functional>
#include <string>

namespace supervision {

/// What a remote backup has come to.
struct RemoteBackup {
    std::uint64_t tables = 0;   ///< of the suite's, read back at the destination and found equal
    std::uint64_t accounts = 0; ///< rows of the table of accounts
};

/// Asked before a database without a single row replaces a copy that has some; false keeps the copy and ends
/// the backup.
using MayReplaceByEmpty = std::function<gui::Task<bool>(std::string database, std::string copy)>;

/// Copies the three databases to the backup server that `kTools` names, as bk_glogin and so on, logging in on
/// this computer with the accounts of `kernoIni`, and reads every copy back. All databases are looked through
/// before the first copy is dropped. Where `kTools` asks for a second generation, it is replaced once all
/// three copies are found equal. `begins` is told that from now on the first generation is not whole.
///
/// Raises database::Error, kTableDamaged for a damaged table, kCopyDiffers for a copy that is not what was
/// sent, kNothingToCopy when an empty database was not let through, and the file error of `kernoIni`; the
/// databases that were copied before stay. No connection is left open.
gui::Task<RemoteBackup> BackUpDatabases(clsMySQLCopyDatabase& copier, clsINI kTools, clsINI kernoIni,
                                        MayReplaceByEmpty mayReplace, std::function<void()> begins);

/// The reverse: replaces the three databases of this computer by their copies on the backup server.
gui::Task<> RestoreDatabases(clsMySQLCopyDatabase& copier, clsINI kTools, clsINI kernoIni);

/// The name of a database's copy.
std::string CopyOf(const suite::Database& database);

// Numbers of errors that no server has.
inline constexpr long kCopyDiffers = 12346;
inline constexpr long kNothingToCopy = 12347;

} // namespace supervision
