#pragma once

#include "common/Files.h"

#include <string>

namespace supervision {

/// The folder beside that of the dated backups in which one is gathered, so that a dated folder appears when
/// it is whole, and from which one is deleted, so that half of one never counts. One copy of the tool at a
/// time works there.
class BackupWork {
public:
    /// Brings in order what a copy of the tool that was killed has left there. Raises the file error: 70 when
    /// another copy is at work there.
    BackupWork();
    /// Deletes what was gathered and not published.
    ~BackupWork();
    BackupWork(const BackupWork&) = delete;
    BackupWork& operator=(const BackupWork&) = delete;

    /// True when something stands there that a kill has left, or that could not be deleted.
    static bool IsLeft();

    /// Makes an empty folder to gather a backup in and returns its path. Raises the file error.
    std::string Gather();

    /// Gives what was gathered its place among the dated folders. A folder of that name is replaced as a
    /// whole, save for what stands in it and was not gathered. Raises the file error, 70 when one of its
    /// files cannot be replaced; the folder is then as it was.
    void Publish(const std::string& name);

    /// Takes a dated folder away, with everything in it. One in which a file is open elsewhere stays whole or
    /// goes later, as the system has it.
    void Remove(const std::string& name);

private:
    void BringInOrder() const;

    std::string folder_;
    common::FileHandle lock_;
};

/// Deletes a folder, which is no link, with everything in it, as far as that is possible. Of a link in it the
/// link goes, not what it leads to.
void DeleteFolder(const std::string& folder);

} // namespace supervision
