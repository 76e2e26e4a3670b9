#pragma once

#include <windows.h>

#include <functional>
#include <optional>
#include <string>

/// Windows of other programs. Each of them may vanish between two calls, and its program may hang: nothing
/// here waits for longer than a second, and what cannot be had counts as not there.
namespace modServerControl {

/// The most that is taken of one text of another program, in bytes. A window may claim any length.
inline constexpr std::size_t kMostText = std::size_t{16} << 20;

/// Calls `visit` once for each child of `parent` (for each top-level window where `parent` is null) that has
/// the class, from the topmost down, until `visit` returns true. Returns the window it stopped at, or null. A
/// program that goes on making windows does not keep the walk going: there is a limit far above what a
/// desktop can hold.
HWND FindWindowWhere(HWND parent, const char* windowClass, const std::function<bool(HWND)>& visit);

/// The title without its last character, which the windows' names and texts are compared and kept by; "" for
/// a window without text and for one that is gone.
std::string ReadTitle(HWND window);

/// The whole title, or "".
std::string ReadFullTitle(HWND window);

/// Full path of the executable of the window's process, without blanks around it; "" when it cannot be had.
std::string GetWindowModulePath(HWND window);

/// File name of the executable of the window's process, or "".
std::string GetWindowModuleName(HWND window);

/// True when the window's program has more rights than the tool, as one that runs as administrator has: what
/// is posted to it does not arrive, and its priority stays what it is.
bool HasMoreRights(HWND window);

/// Full path of the executable that the process was started from, or "".
std::string GetProcessPath(HANDLE process);

/// The window's answer to a message; nothing when it does not answer within a second or is known to hang. A
/// text's length comes in characters, each of which takes up to two bytes.
std::optional<LRESULT> Ask(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

} // namespace modServerControl
