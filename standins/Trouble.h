#pragma once

#include "StandinCommands.h"

/// What makes a stand-in misbehave, when a test asks for it: error dialogs and a crash.
namespace standin {

/// Opens error dialogs over `owner` and returns at once. `owner` is disabled until all of them are closed.
void RaiseDialogs(HWND owner, Command kind, int count);

/// Handles a message of one of the dialogs; false when it belongs to none.
bool HandleDialogMessage(MSG& message);

/// True while one of its dialogs waits for an answer.
bool DialogIsOpen();

/// Ends the program as a fault would.
void Crash();

} // namespace standin
