#include "settings/clsINI.h"

#include "common/Files.h"
#include "common/RuntimeError.h"

std::string clsINI::Text() const {
    if (!common::FileExists(path_))
        return {};
    std::string text = common::ReadFileText(path_);
    // A file that exists always holds a line; one of zero bytes is damaged, and writing to it would bury
    // that.
    if (text.empty())
        throw RuntimeError(common::kInputPastEnd);
    return text;
}

std::string clsINI::INIProperty(std::string_view key) const {
    return settings::FindValue(Text(), key).value_or("");
}

void clsINI::INIProperty(std::string_view key, std::string_view value) {
    common::ReplaceFileText(path_, settings::TextWithValue(Text(), key, value));
}

void clsINI::Change(std::span<const settings::Entry> entries) {
    common::ReplaceFileText(path_, settings::TextWithValues(Text(), entries));
}

bool clsINI::AddSection(std::string_view name) {
    common::ReplaceFileText(path_, settings::TextWithSection(Text(), name));
    return false;
}
