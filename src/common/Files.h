#pragma once

#include "common/Handle.h"

#include <windows.h>

#include <optional>
#include <string>
#include <string_view>

namespace common {

using FileHandle = Handle<HANDLE, CloseHandle>;

/// Deleting included, or who reads a file would keep another program from replacing it.
inline constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

/// Opens or makes a file. Null when it fails; GetLastError tells why.
FileHandle TryOpenFile(const std::string& path, DWORD access, DWORD disposition, DWORD share = kShareAll);

/// The same; raises the file error.
FileHandle OpenFile(const std::string& path, DWORD access, DWORD disposition, DWORD share = kShareAll);

/// Reads up to `size` bytes from where the last call ended into `place`; how many there were, 0 at the end.
/// Raises the file error, which names `path`.
std::size_t ReadFrom(const FileHandle& file, char* place, std::size_t size, const std::string& path);

/// True when a normal file (no folder, not hidden, not a system file) answers to the path.
bool FileExists(const std::string& path);

/// True when a folder answers to the path.
bool FolderExists(const std::string& path);

struct FolderEntry {
    std::string name;
    DWORD attributes;

    bool IsFolder() const { return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0; }
};

/// What stands in a folder, in the order of the directory, itself and the folder above left out. Nothing when
/// it cannot be listed; GetLastError tells why.
std::optional<std::vector<FolderEntry>> EntriesOf(const std::string& folder);

/// Makes one folder. Raises the file error of a failure; a folder that is already there is 75.
void MakeFolder(const std::string& path);

/// Makes one folder where it is missing. Raises the file error.
void RequireFolder(const std::string& path);

/// The whole file as 8-bit text. Raises the file error: 53 when there is no such file, 75 for one beyond 1
/// GB.
std::string ReadFileText(const std::string& path);

/// A file on its way to take the place of `path`. It is written beside it, under a name of this process's own
/// that was free, and goes again when it is not committed. All errors name `path`.
class FileReplacement {
public:
    /// Raises the file error.
    explicit FileReplacement(const std::string& path);
    ~FileReplacement();
    FileReplacement(const FileReplacement&) = delete;
    FileReplacement& operator=(const FileReplacement&) = delete;

    /// Appends. Raises the file error.
    void Write(std::string_view text);

    /// Has the file on the disk and then moves it over `path` in one step, so that whoever looks, at any
    /// moment and after any crash, finds the old file or the new one. Raises the file error; the old file is
    /// then untouched.
    void Commit();

private:
    std::string path_;
    std::string fresh_;
    FileHandle file_;
};

/// Writes `text` to a file beside `path` and moves it over `path` in one step, so that whoever looks, at any
/// moment and after any crash, finds the old file or the new one. A read-only, hidden or system file is
/// refused with 70, as is a locked one. Raises the file error; the old file is then untouched.
void ReplaceFileText(const std::string& path, std::string_view text);

/// Appends to the file, creating it when missing. Raises the file error.
void AppendFileText(const std::string& path, std::string_view text);

/// Folder of the running program, without a trailing backslash. Everything the tool keeps lies below it.
/// Raises 75 where the folder has no name that fits.
const std::string& ProgramFolder();

/// Puts the tool's files elsewhere than beside its program, for a run that must leave the real ones alone.
void ProgramFolder(const std::string& folder);

} // namespace common
