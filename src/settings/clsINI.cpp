#include "settings/clsINI.h"

#include "common/Files.h"
#include "common/RuntimeError.h"
#include "settings/IniText.h"

std::string clsINI::Text() const {
    std::string text = common::ReadFileText(path_);
    // A file that exists always holds a line; one of zero bytes is damaged, and writing to it would bury
    // that.
    if (text.empty())
        throw RuntimeError(common::kInputPastEnd);
    return text;
}

std::string clsINI::TextToRewrite() const {
    return common::FileExists(path_) ? Text() : std::string();
}

std::string clsINI::INIProperty(std::string_view key) const {
    if (!common::FileExists(path_))
        return {};
    return settings::FindValue(Text(), key).value_or("");
}

void clsINI::INIProperty(std::string_view key, std::string_view value) {
    common::ReplaceFileText(path_, settings::TextWithValue(TextToRewrite(), key, value));
}

bool clsINI::AddSection(std::string_view name) {
    common::ReplaceFileText(path_, settings::TextWithSection(TextToRewrite(), name));
    return false;
}
