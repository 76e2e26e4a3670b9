#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

/// What a settings file says, as functions over its text: "key=value" lines, of which the key is everything
/// before the first "=" (blanks included, letter case counts). Sections mean nothing for finding a key.
///
/// A line ends at CR LF. Files that were edited elsewhere also hold lone LFs and CRs; these end a line too,
/// since otherwise the first value of such a file would be its whole remainder, and writing it would wipe the
/// rest. A line that is not ours to change keeps the end it has.
namespace settings {

/// Value of the first line with the key; nothing when there is none.
std::optional<std::string> FindValue(std::string_view text, std::string_view key);

/// The text with every line of the key given the new value; a key without a line becomes the last line.
/// The last line is always ended.
std::string TextWithValue(std::string text, std::string_view key, std::string_view value);

/// A key, whose name outlives this, and its value.
struct Entry {
    std::string_view key;
    std::string value;
};

/// The same for several keys in turn, in one walk through the text. A value is a single line.
std::string TextWithValues(std::string text, std::span<const Entry> entries);

/// The text with "[name]" as a last line between two blank ones, whether or not it has such a section
/// already; a first section has no blank line above it.
std::string TextWithSection(std::string_view text, std::string_view name);

} // namespace settings
