#pragma once

#include "gui/Task.h"
#include "settings/clsINI.h"
#include "supervision/BackupClock.h"

#include <string>
#include <vector>

/// What is looked at before the operator relies on timed backups.
namespace supervision {

/// The dated folders that one phase makes when each backup is quick: one for every minute that it touches.
double FoldersOfAPhase(const BackupSettings& settings);

/// What stands in the way of timed backups or would surprise, a sentence each, worst first; empty when all is
/// well. `kept` as it was typed. Asks this computer's MySQL and the backup server where they answer. Raises
/// the file error of either file.
gui::Task<std::vector<std::string>> FindingsOnBackup(clsINI kTools, clsINI kernoIni, BackupSettings settings,
                                                     std::string kept);

/// "10 folders are kept: those of the last 3 hours", by the present settings.
std::string RetentionText(const BackupSettings& settings, const std::string& kept);

} // namespace supervision
