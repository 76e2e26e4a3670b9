#pragma once

#include "gui/Text.h"
#include "settings/clsINI.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace supervision {

/// Up to three choices that are stored by their number.
struct Choices {
    std::array<gui::OptionButton*, 3> options{};
    /// The choice that stands for every number without one; none is selected then where this is empty.
    std::optional<std::size_t> otherwise;
};

/// A key of a settings file and the control that shows it.
class BoundSetting {
public:
    using Shown = std::variant<gui::TextBox*, gui::CheckBox*, Choices>;

    BoundSetting(std::string_view key, Shown shown) : key_(key), shown_(std::move(shown)) {}

    /// Shows the setting, which runs the control's handler. A text goes into the box as it is; otherwise the
    /// number at its start counts, 0 when there is none, and any number but 0 checks a box.
    void Load(const clsINI& ini) const;

    /// Writes what is shown: the text as it is, "0" or "1" for a check box, the number of the choice. Where
    /// no choice is selected the key stays as it was.
    void Save(clsINI& ini) const;

private:
    std::string_view key_;
    Shown shown_;
};

} // namespace supervision
