#pragma once

#include "gui/Lists.h"
#include "gui/Text.h"
#include "settings/clsINI.h"

#include <string>
#include <string_view>
#include <variant>

namespace config {

/// Index of "Normal" in the lists of priorities.
inline constexpr int kNormalPriority = 3;

/// A control that shows a setting; its kind decides how the text of the setting is converted: a text box
/// takes it as it is, a check box as CheckValueOf and a list of priorities as PriorityOf say.
using SettingControl = std::variant<gui::TextBox*, gui::CheckBox*, gui::ComboBox*>;

/// One setting: where it is kept, and the control that it is edited in.
struct SettingRow {
    clsINI* file;
    std::string_view key;
    SettingControl control;
};

/// 1 for a whole text that is a number other than 0 after rounding, however large, which is how the servers
/// take a switch; 0 for every other text.
int CheckValueOf(std::string_view text);

/// The number at the start of the text, 0 ("Realtime") when there is none; "Normal" for one that is no index
/// of the list, as no server can be given such a priority.
int PriorityOf(std::string_view text);

/// Shows the text of a setting in its control.
void ShowSetting(const SettingControl& control, const std::string& text);

/// What the control says, as text of its setting.
std::string SettingText(const SettingControl& control);

} // namespace config
