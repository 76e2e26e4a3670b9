#pragma once

#include "StandinCommands.h"

/// The bad ways that a server can take, on demand.
namespace standin {

/// Raises error dialogs over `owner`, which cannot be used before they have all ended, and returns at once.
void RaiseDialogs(HWND owner, Command kind, int count);

/// True when the message was for one of the dialogs, and has been dealt with.
bool HandleDialogMessage(MSG& message);

/// True while one of its dialogs waits for an answer.
bool DialogIsOpen();

/// Ends the program as a fault would.
void Crash();

} // namespace standin
