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

/// The keys that are to have values. They stand in one piece of memory, as a node for each would take longer
/// to make than most texts to be walked through.
class Wanted {
public:
    struct Key {
        std::string_view name;
        std::string_view value;
        bool found = false;
    };

    /// The last value of a key counts.
    explicit Wanted(std::span<const Entry> entries) {
        keys_.reserve(entries.size());
        for (const Entry& entry : entries) {
            const auto place = PlaceOf(entry.key);
            if (place != keys_.end() && place->name == entry.key)
                place->value = entry.value;
            else
                keys_.insert(place, {entry.key, entry.value});
        }
    }

    /// Null for a key that is not among them.
    Key* Find(std::string_view name) {
        const auto place = PlaceOf(name);
        return place != keys_.end() && place->name == name ? &*place : nullptr;
    }

private:
    std::vector<Key>::iterator PlaceOf(std::string_view name) {
        // By length first: most keys that are compared differ in that already.
        const auto isBefore = [](std::string_view left, std::string_view right) {
            return left.size() != right.size() ? left.size() < right.size() : left < right;
        };
        return std::ranges::lower_bound(keys_, name, isBefore, &Key::name);
    }

    std::vector<Key> keys_;
};

/// `text` is what `result` ends in.
void EndLastLine(std::string& result, std::string_view text) {
    if (!text.empty() && !text.ends_with('\r') && !text.ends_with('\n'))
        result += kLineEnd;
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
    Wanted wanted(entries);
    std::string result;
    result.reserve(text.size() + 64 * entries.size());
    // What stays is copied in as long pieces as it comes in.
    std::string_view rest = text;
    std::string_view stays = text;
    while (!rest.empty()) {
        const common::Line line = common::NextLine(rest);
        const std::size_t equals = line.text.find('=');
        Wanted::Key* key = equals == line.text.npos ? nullptr : wanted.Find(line.text.substr(0, equals));
        if (!key)
            continue;
        key->found = true;
        result.append(stays.substr(0, static_cast<std::size_t>(line.text.data() - stays.data())));
        result.append(key->name).append("=").append(key->value).append(kLineEnd);
        stays = rest;
    }
    result.append(stays);
    EndLastLine(result, stays);
    bool isNew = text.empty();
    for (const Entry& entry : entries) {
        Wanted::Key* key = wanted.Find(entry.key);
        // A key is appended where it came first.
        if (std::exchange(key->found, true))
            continue;
        result.append(key->name).append("=").append(key->value);
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
    EndLastLine(result, text);
    if (!result.empty())
        result += kLineEnd;
    return result.append("[").append(name).append("]").append(kLineEnd).append(kLineEnd);
}

} // namespace settings
