#include "settings/clsINI.h"

#include "common/Files.h"
#include "common/RuntimeError.h"

namespace {

std::string TextOfExisting(const std::string& path) {
    std::string text = common::ReadFileText(path);
    // A file that exists always holds a line; one of zero bytes is damaged, and writing to it would bury
    // that.
    if (text.empty())
        throw RuntimeError(common::kInputPastEnd);
    return text;
}

/// The text that is to be changed. The file is nearly always there, so that is not asked first; one that is
/// hidden is read here and then not replaced.
std::string TextToChange(const std::string& path) {
    try {
        return TextOfExisting(path);
    } catch (const RuntimeError& error) {
        if (error.Number() == common::kFileNotFound || error.Number() == common::kPathNotFound)
            return {};
        throw;
    }
}

} // namespace

std::string clsINI::Text() const {
    return common::FileExists(path_) ? TextOfExisting(path_) : std::string();
}

std::string clsINI::INIProperty(std::string_view key) const {
    return settings::FindValue(Text(), key).value_or("");
}

void clsINI::INIProperty(std::string_view key, std::string_view value) {
    common::ReplaceFileText(path_, settings::TextWithValue(TextToChange(path_), key, value));
}

void clsINI::Change(std::span<const settings::Entry> entries) {
    common::ReplaceFileText(path_, settings::TextWithValues(TextToChange(path_), entries));
}

bool clsINI::AddSection(std::string_view name) {
    common::ReplaceFileText(path_, settings::TextWithSection(TextToChange(path_), name));
    return false;
}
