#include "settings/IniText.h"

#include "common/Text.h"

namespace settings {

using common::kLineEnd;

namespace {

bool IsEntryOf(std::string_view line, std::string_view key) {
    return line.find('=') == key.size() && line.starts_with(key);
}

void AppendLine(std::string& text, const common::Line& line) {
    text.append(line.text).append(line.end.empty() ? kLineEnd : line.end);
}

} // namespace

std::optional<std::string> FindValue(std::string_view text, std::string_view key) {
    while (!text.empty()) {
        const std::string_view line = common::NextLine(text).text;
        if (IsEntryOf(line, key))
            return std::string(line.substr(key.size() + 1));
    }
    return std::nullopt;
}

std::string TextWithValue(std::string_view text, std::string_view key, std::string_view value) {
    std::string entry;
    entry.append(key).append("=").append(value);

    std::string result;
    result.reserve(text.size() + entry.size() + 2 * kLineEnd.size());
    const bool isNew = text.empty();
    bool found = false;
    while (!text.empty()) {
        const common::Line line = common::NextLine(text);
        if (IsEntryOf(line.text, key)) {
            AppendLine(result, {entry, kLineEnd});
            found = true;
        } else {
            AppendLine(result, line);
        }
    }
    if (found)
        return result;
    result += entry;
    // A value that brings its own line end gets no second one, save in a new file.
    if (isNew || !result.ends_with(kLineEnd))
        result += kLineEnd;
    return result;
}

std::string TextWithSection(std::string_view text, std::string_view name) {
    std::string result;
    result.reserve(text.size() + name.size() + 16);
    while (!text.empty())
        AppendLine(result, common::NextLine(text));
    if (!result.empty())
        result += kLineEnd;
    return result.append("[").append(name).append("]").append(kLineEnd).append(kLineEnd);
}

} // namespace settings
