#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace gui {

/// Gives each of the controls of `form` a tooltip whose id has a string resource. The tooltips go with the
/// form's window.
void AddToolTips(HWND form, const std::vector<HWND>& controls);

/// Gives the control of `form` this tooltip instead of the one that it may have.
void SetToolTip(HWND form, HWND control, const std::string& text);

/// Lets the tooltips see a message of the queue before its window gets it. They could watch every control by
/// themselves, but each message to a control would then take many times as long.
void RelayToToolTips(const MSG& message);
/// True when a notification that reached `form` was a question of its tooltips, which has been answered.
bool AnswerToolTips(HWND form, NMHDR& header);
/// To be called when the controls of `form` have moved.
void MoveToolTips(HWND form);
/// To be called when the window of `form` goes.
void ForgetToolTips(HWND form);

} // namespace gui
