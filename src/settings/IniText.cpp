#include "settings/IniText.h"

#include "common/Text.h"

#include <unordered_map>
#include <utility>

namespace settings {

using common::kLineEnd;

namespace {

bool IsEntryOf(std::string_view line, std::string_view key) {
    return line.find('=') == key.size() && line.starts_with(key);
}

void EndLastLine(std::string& text) {
    if (!text.empty() && !text.ends_with('\r') && !text.ends_with('\n'))
        text += kLineEnd;
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
    const Entry entry{key, std::string(value)};
    return TextWithValues(text, {&entry, 1});
}

std::string TextWithValues(std::string_view text, std::span<const Entry> entries) {
    struct Wanted {
        std::string_view value;
        bool found = false;
    };
    // The last value of a key counts.
    std::unordered_map<std::string_view, Wanted> wanted;
    wanted.reserve(entries.size());
    for (const Entry& entry : entries)
        wanted[entry.key].value = entry.value;

    std::string result;
    result.reserve(text.size() + 64 * entries.size());
    // What stays is copied in as long pieces as it comes in.
    std::string_view rest = text;
    std::string_view stays = text;
    while (!rest.empty()) {
        const common::Line line = common::NextLine(rest);
        const std::size_t equals = line.text.find('=');
        const auto key = equals == line.text.npos ? wanted.end() : wanted.find(line.text.substr(0, equals));
        if (key == wanted.end())
            continue;
        key->second.found = true;
        result.append(stays.substr(0, static_cast<std::size_t>(line.text.data() - stays.data())));
        result.append(key->first).append("=").append(key->second.value).append(kLineEnd);
        stays = rest;
    }
    result.append(stays);
    EndLastLine(result);
    bool isNew = text.empty();
    for (const Entry& entry : entries) {
        Wanted& key = wanted[entry.key];
        // A key is appended where it came first.
        if (std::exchange(key.found, true))
            continue;
        result.append(entry.key).append("=").append(key.value);
        // A value that brings its own line end gets no second one, save in a new file.
        if (std::exchange(isNew, false) || !result.ends_with(kLineEnd))
            result += kLineEnd;
    }
    return result;
}

std::string TextWithSection(std::string_view text, std::string_view name) {
    std::string result;
    result.reserve(text.size() + name.size() + 16);
    result.append(text);
    EndLastLine(result);
    if (!result.empty())
        result += kLineEnd;
    return result.append("[").append(name).append("]").append(kLineEnd).append(kLineEnd);
}

} // namespace settings
