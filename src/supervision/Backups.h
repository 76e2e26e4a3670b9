#pragma once

#include <functional>

namespace supervision {

/// The two kinds of backup, each made in one call. They raise what fails in them.
struct Backups {
    std::function<void()> FileBackup;   ///< the table files into a dated folder
    std::function<void()> RemoteBackup; ///< the databases to the remote SQL server
};

} // namespace supervision
