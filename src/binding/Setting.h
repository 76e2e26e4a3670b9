#pragma once

#include "gui/Lists.h"
#include "gui/Text.h"
#include "settings/clsINI.h"

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace binding {

/// What number a setting's text stands for: a check box is checked for any but 0, a list selects the entry
/// of that index.
using NumberOf = std::function<int(std::string_view)>;

/// 1 when the text starts with a number other than 0.
int CheckedByNumber(std::string_view text);

/// Up to three choices that are stored by their number; the number at the start of the text counts, 0 when
/// there is none.
struct Choices {
    std::array<gui::OptionButton*, 3> options{};
    /// The choice that stands for every number without one; none is selected then where this is empty.
    std::optional<std::size_t> otherwise;
};

/// A key of a settings file, bound to the control that shows it. File and control outlive the setting.
class Setting {
public:
    /// The box takes the text as it is.
    Setting(clsINI& file, std::string_view key, gui::TextBox& box);
    Setting(clsINI& file, std::string_view key, gui::CheckBox& box,
            const NumberOf& checked = CheckedByNumber);
    Setting(clsINI& file, std::string_view key, gui::ComboBox& list, const NumberOf& index);
    Setting(clsINI& file, std::string_view key, const Choices& choices);

    clsINI& File() const { return *file_; }
    /// The control; the first one of several choices.
    gui::Control& Control() const { return *control_; }
    std::string_view Key() const { return key_; }

    /// Shows a text of the file, which runs the control's handler, and remembers it.
    void Show(const std::string& text);
    /// The text of the file is now what the control says.
    void Saved();
    /// The text of the file that was shown last.
    const std::string& Loaded() const { return loaded_; }
    /// What the control says, as text for the file: "0" or "1" for a check box, the number of an entry or a
    /// choice. Nothing where no choice is selected.
    std::optional<std::string> Value() const { return value_(); }
    /// True when the control says other than it did right after it showed the text of the file. A text that
    /// the control shows in its own way ("yes" as an empty box) is no change.
    bool Changed() const { return Value() != shown_; }

private:
    clsINI* file_;
    std::string_view key_;
    gui::Control* control_;
    std::function<void(const std::string&)> show_;
    std::function<std::optional<std::string>()> value_;
    std::string loaded_;
    std::optional<std::string> shown_;
};

/// Settings that stay together, run after run.
using Runs = std::vector<std::vector<Setting>*>;

/// Reads each file once, then shows every setting in turn. Raises the file error with all controls as they
/// were.
void Load(const Runs& runs);

/// Writes what every control says. The changes of a file are made in its text as it is now, all at once:
/// it is replaced once, and a failure or a crash leaves it with all of them or with none. Keys that a file
/// lacks are appended in turn; a key whose setting has no value stays as it is. Raises the file error of the
/// first file that cannot be written; those before it are written then.
void Save(const Runs& runs);

} // namespace binding
