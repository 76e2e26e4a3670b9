#pragma once

#include "gui/Form.h"
#include "gui/Menu.h"

#include <shellapi.h>

/// A form's icon in the task bar's notification area.
///
/// The icon's callback message is the left-button-down message: every tray event reaches the form as
/// Form_MouseDown whose X is the mouse message (kTrayDoubleClick, kTrayRightDown, ...). EventOf tells it from
/// a real press at those coordinates.
namespace modSystemTray {

inline constexpr int kTrayDoubleClick = WM_LBUTTONDBLCLK;
inline constexpr int kTrayRightDown = WM_RBUTTONDOWN;

/// Room for the tooltip: the text and a zero, cut to it or filled up with blanks.
inline constexpr std::size_t kTipSize = 64;

/// The record that goes to the platform for the form and the tooltip.
NOTIFYICONDATAA TrayRecord(const gui::Form& form, const std::string& tip);

/// Puts the icon there; one that is there already gets the tooltip and the picture. False when there is no
/// icon afterwards.
bool TrayAddIcon(const gui::Form& form, const std::string& tip);
/// Replaces the tooltip and the picture of the form's icon.
void TrayModifyIcon(const gui::Form& form, const std::string& tip);
/// Nothing happens when the form has no icon there.
void TrayDeleteIcon(const gui::Form& form);

/// The mouse message of the tray event that reached the form as a press at (x, y); 0 for a real press.
int EventOf(const gui::Form& form, int x, int y);

/// Shows the icon's menu; while a box or dialog of the form is open, that one comes to the front instead.
void TrayShowMenu(const gui::Form& form, gui::PopupMenu& menu);

} // namespace modSystemTray
