#include "settings/IniText.h"

#include "common/Text.h"

#include <unordered_map>
#include <unordered_set>
#include <vector>

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
    const Entry entry{std::string(key), std::string(value)};
    return TextWithValues(text, {&entry, 1});
}

std::string TextWithValues(std::string_view text, std::span<const Entry> entries) {
    // The last value of a key counts, its first place says where a missing one is appended.
    std::vector<std::string_view> order;
    std::unordered_map<std::string_view, std::string_view> values;
    for (const Entry& entry : entries)
        if (values.insert_or_assign(entry.key, entry.value).second)
            order.push_back(entry.key);

    std::string result;
    result.reserve(text.size() + 64 * entries.size());
    bool isNew = text.empty();
    std::unordered_set<std::string_view> found;
    while (!text.empty()) {
        const common::Line line = common::NextLine(text);
        const std::size_t equals = line.text.find('=');
        const auto known = equals == line.text.npos ? values.end() : values.find(line.text.substr(0, equals));
        if (known == values.end()) {
            AppendLine(result, line);
            continue;
        }
        found.insert(known->first);
        result.append(known->first).append("=");
        AppendLine(result, {known->second, kLineEnd});
    }
    for (const std::string_view key : order)
        if (!found.contains(key)) {
            result.append(key).append("=").append(values[key]);
            // A value that brings its own line end gets no second one, save in a new file.
            if (isNew || !result.ends_with(kLineEnd))
                result += kLineEnd;
            isNew = false;
        }
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
