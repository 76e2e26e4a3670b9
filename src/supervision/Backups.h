#pragma once

#include "gui/Task.h"
#include "settings/clsINI.h"
#include "supervision/clsMySQLCopyDatabase.h"

#include <functional>
#include <string>

/// The two kinds of backup, and the way back from one of them.
namespace supervision {

/// Copies the table files of MySQL, as they are at this moment, and makes them the backup folder of this
/// minute when all are whole, in the place of one that is there. `progress` is told of each file. Raises the
/// file error, which names the file; the folders that are there stay as they were then, and when it is ended.
gui::Task<> BackUpFiles(std::function<void(const std::string& file)> progress);

/// Copies the three databases to the backup server that `kTools` names, as bk_glogin and so on, logging in on
/// this computer with the accounts of `kernoIni`. All databases are looked through before the first copy is
/// dropped. Raises database::Error, kTableDamaged for a damaged table, and the file error of `kernoIni`; the
/// databases that were copied before stay. No connection is left open.
gui::Task<> BackUpDatabases(clsMySQLCopyDatabase& copier, clsINI kTools, clsINI kernoIni);

/// The reverse: replaces the three databases of this computer by their copies on the backup server.
gui::Task<> RestoreDatabases(clsMySQLCopyDatabase& copier, clsINI kTools, clsINI kernoIni);

} // namespace supervision
