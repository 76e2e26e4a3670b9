#pragma once

#include "gui/Task.h"
#include "settings/clsINI.h"
#include "supervision/TableProof.h"

#include <functional>
#include <string>
#include <vector>

namespace supervision {

/// One table of a file backup.
struct CopiedTable {
    std::string name; ///< "glogin.account"
    TableVerdict verdict;
};

struct FileBackup {
    std::string folder; ///< the name of the dated folder
    std::vector<CopiedTable> tables;
    std::vector<std::string> warnings; ///< about the whole backup, each a sentence without its full stop

    /// Every table, and nothing to be warned of.
    bool IsProven() const;
};

/// Copies the table files of MySQL as they are at this moment, proves each table's copy against the table,
/// and makes them the dated folder of this minute when all are whole, in the place of one that is there.
/// `progress` is told of each file. Where MySQL answers to the logins of `kerno`, it is asked for its data
/// folder and for the tables' rows too. With `lock` nobody can write to a database while its tables are
/// copied; a lock that is not to be had within ten seconds is done without, with a warning.
///
/// Raises the file error, which names the file, and kTableDamaged for a table that is unreadable. The dated
/// folders are as they were then, and when it is ended.
gui::Task<FileBackup> BackUpFiles(std::function<void(const std::string& file)> progress, clsINI kerno,
                                  bool lock = false);

} // namespace supervision
