#pragma once

#include <windows.h>

/// What a stand-in server does on demand. The commands are entries of its own menu, and other programs post
/// them to its main window: PostMessageA(window, CommandMessage(), command, number).
namespace standin {

enum class Command : WPARAM {
    WriteLines = 100,    ///< writes `number` numbered lines, "Line 1" and so on, into its message box
    RaiseDialogs,        ///< raises `number` error dialogs, a few at a time, whose title names no server
    RaiseTitledDialog,   ///< raises one whose title is the server's executable
    RaiseStubbornDialog, ///< raises one that ignores posted closes; its OK button ends it
    RefuseToClose,       ///< from now on (`number` 1) or no longer (0) ignores closes
    Hang,                ///< answers no message for `number` seconds
    Crash,               ///< dies of an access violation
    Broadcast,           ///< zone only: sends what is in its text field to the players
    KeepMessages,        ///< from now on its message box refuses to be emptied
};

inline constexpr int kMenuStart = static_cast<int>(Command::WriteLines);
inline constexpr int kSendButton = 1;

/// Dialog texts are "Error N: " and this, N counting from 1 in each process.
inline constexpr const char* kErrorText = "Access violation at address 00403A1C.";
inline constexpr const char* kErrorTitle = "Application Error";

/// What the zone server writes before a text that went out to the players.
inline constexpr const char* kBroadcastMark = "Broadcast: ";

/// Property of the main window: how its starter wished it to be shown (a SW_ value).
inline constexpr const char* kShowCommandProperty = "KernoStandinShowCommand";

/// With this variable in its environment a stand-in does nothing by itself: no messages, no clock, no
/// players.
inline constexpr const char* kQuietVariable = "KERNO_STANDIN_QUIET";

inline UINT CommandMessage() {
    return RegisterWindowMessageA("KernoStandinCommand");
}

} // namespace standin
