#include "settings/IniText.h"

#include "common/Text.h"

#include <algorithm>
#include <utility>
#include <vector>

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

std::string TextWithValue(std::string text, std::string_view key, std::string_view value) {
    const Entry entry{key, std::string(value)};
    return TextWithValues(std::move(text), {&entry, 1});
}

std::string TextWithValues(std::string text, std::span<const Entry> entries) {
    struct Wanted {
        std::string_view key;
        std::string_view value;
        bool found = false;
    };
    std::vector<Wanted> wanted;
    wanted.reserve(entries.size());
    const auto wantedOf = [&wanted](std::string_view key) {
        return std::ranges::find(wanted, key, &Wanted::key);
    };
    for (const Entry& entry : entries) {
        // The last value of a key counts; it is appended where the key came first.
        const auto known = wantedOf(entry.key);
        if (known == wanted.end())
            wanted.push_back({entry.key, entry.value});
        else
            known->value = entry.value;
    }

    bool isNew = text.empty();
    // Most settings are saved as they were: only a line that changes is touched.
    std::size_t at = 0;
    while (at < text.size()) {
        std::string_view rest = std::string_view(text).substr(at);
        const common::Line line = common::NextLine(rest);
        const std::size_t length = line.text.size() + line.end.size();
        const std::size_t equals = line.text.find('=');
        const auto key = equals == line.text.npos ? wanted.end() : wantedOf(line.text.substr(0, equals));
        if (key == wanted.end()) {
            at += length;
            continue;
        }
        key->found = true;
        if (line.text.substr(equals + 1) != key->value || line.end != kLineEnd)
            text.replace(at, length, std::string(key->key).append("=").append(key->value).append(kLineEnd));
        at += key->key.size() + 1 + key->value.size() + kLineEnd.size();
    }
    EndLastLine(text);
    for (const Wanted& key : wanted) {
        if (key.found)
            continue;
        text.append(key.key).append("=").append(key.value);
        // A value that brings its own line end gets no second one, save in a new file.
        if (std::exchange(isNew, false) || !text.ends_with(kLineEnd))
            text += kLineEnd;
    }
    return text;
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
