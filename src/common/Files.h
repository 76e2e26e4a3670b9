#pragma once

#include "common/Handle.h"

#include <windows.h>

#include <string>
#include <string_view>
#include <vector>

namespace common {

using FileHandle = Handle<HANDLE, CloseHandle>;

/// True when a normal file (no folder, not hidden, not a system file) answers to the path.
bool FileExists(const std::string& path);

/// True when a folder answers to the path.
bool FolderExists(const std::string& path);

/// Makes one folder. Raises the file error of a failure; a folder that is already there is 75.
void MakeFolder(const std::string& path);

/// Makes one folder where it is missing. Raises the file error.
void RequireFolder(const std::string& path);

/// The whole file as 8-bit text. Raises the file error: 53 when there is no such file.
std::string ReadFileText(const std::string& path);

/// Writes `text` to a file beside `path` and moves it over `path` in one step, so that whoever looks, at any
/// moment and after any crash, finds the old file or the new one. A read-only, hidden or system file is
/// refused with 70, as is a locked one. Raises the file error; the old file is then untouched.
void ReplaceFileText(const std::string& path, std::string_view text);

/// Appends to the file, creating it when missing. Raises the file error.
void AppendFileText(const std::string& path, std::string_view text);

/// Folder of the running program, without a trailing backslash. Everything the tool keeps lies below it.
const std::string& ProgramFolder();

/// Puts the tool's files elsewhere than beside its program, for a run that must leave the real ones alone.
void ProgramFolder(const std::string& folder);

} // namespace common
