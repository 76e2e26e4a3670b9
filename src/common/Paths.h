#pragma once

#include <optional>
#include <string>
#include <string_view>

/// Paths of the system, whose names may hold any letter, in the tool's 8-bit text.
namespace common {

// Windows allows a path 260 characters. These leave room for what stands below the folder: for a dated backup
// with its tables, and for the servers' programs and files.
inline constexpr std::size_t kLongestProgramFolder = 160;
inline constexpr std::size_t kLongestChosenFolder = 220;

/// The text in the ANSI code page; nothing where that lacks a letter. No letter becomes a similar one.
std::optional<std::string> NarrowExactly(std::wstring_view text);

/// The folder in 8-bit text: under its own name, or else by the short names that the system gave to it and to
/// those on the way. Raises 75 with the reason when neither is the same path within `longest` characters.
std::string NarrowFolder(const std::wstring& folder, std::size_t longest);

/// Folder of the running program, without a trailing backslash. Raises as NarrowFolder.
std::string FolderOfProgram();

} // namespace common
