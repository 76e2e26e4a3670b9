#pragma once

#include "gui/Task.h"

#include <windows.h>

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>

/// The error boxes that the servers raise, and that block them until somebody answers.
namespace modServerControl {

/// Does the title name one of the servers ("kCharacter", "kLogin", "kZone"), in any letter case?
bool NamesServer(std::string_view title);

/// Tests of one dialog window, for HasDialog and CloseDialog.
using DialogTest = std::function<bool(HWND)>;

/// The process that owns the window runs one of the servers' executables, by its file name, letter case
/// counting.
bool IsServerProcessWindow(HWND window);

/// As IsServerProcessWindow, but the name may stand anywhere in the executable's full path, in any letter
/// case: the error detector's own test.
bool IsServerPathWindow(HWND window);

/// IsServerPathWindow for one round over many windows: a process is asked for its path once and not for each
/// of its windows, because the path costs far more than the rest of a round. For no longer than a round: the
/// system gives the id of a process that has ended to another one.
class ServerPathWindows {
public:
    bool Contains(HWND window);

private:
    std::unordered_map<DWORD, bool> known_;
};

/// The window's title, as ReadTitle reads it, names one of the servers.
bool IsServerDialogTitle(HWND window);

/// The window's whole title names one of the servers: the error detector's own test.
bool IsServerDialogWholeTitle(HWND window);

/// True when some top-level dialog passes the test.
bool HasDialog(const DialogTest& test);

/// A dialog that a close was posted to, and its text without the last character; null and "" for none.
struct ClosedDialog {
    HWND window = nullptr;
    std::string text;

    /// It was there and is there no more.
    bool HasGone() const { return window && !IsWindow(window); }
};

/// Posts a close to the first dialog that passes the test and shows a text. Gives the dialog a moment to go,
/// so that the next call does not find it again, and returns early when the user does something.
ClosedDialog CloseFirstDialog(const DialogTest& test);

/// The text of CloseFirstDialog alone.
std::string CloseDialog(const DialogTest& test);

/// 1 when there is a dialog of the kind, else 0.
std::int16_t HasDialogByProcess();
std::int16_t HasDialogByTitle();

/// CloseDialog for the kind.
std::string CloseDialogByProcess();
std::string CloseDialogByTitle();

/// Closes the servers' dialogs until none is left; one that has not closed within 30 seconds is left where it
/// is. Always 1.
gui::Task<std::int16_t> CloseServerDialogs();

} // namespace modServerControl
