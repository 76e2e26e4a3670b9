#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Helpers over 8-bit text. Letters beyond ASCII follow the system's ANSI code page.
namespace common {

inline constexpr std::string_view kLineEnd = "\r\n";

/// Without leading and trailing blanks (the blank character only; tabs stay).
std::string Trim(std::string_view text);

std::string UpperCase(std::string_view text);

/// True when both are the same text without regard to letter case.
bool EqualsIgnoreCase(std::string_view a, std::string_view b);

/// True when it holds no letters beyond ASCII, which are the only ones that character sets differ in.
bool IsAscii(std::string_view text);

/// Position of the first `part` in `text` from `start` on, without regard to letter case; npos when there is
/// none.
std::size_t FindIgnoreCase(std::string_view text, std::string_view part, std::size_t start = 0);

/// True when `part` occurs in `text`, without regard to letter case.
bool ContainsIgnoreCase(std::string_view text, std::string_view part);

/// Every occurrence of `part` (not empty) replaced, case-sensitively.
std::string ReplaceAll(std::string_view text, std::string_view part, std::string_view with);

/// The pieces between separators; a text without one gives itself, an empty text one empty piece.
std::vector<std::string> Split(std::string_view text, char separator);

/// A line and the characters that end it: CR LF, a lone LF, a lone CR, or nothing at the end of the text.
struct Line {
    std::string_view text;
    std::string_view end;
};

/// Takes the first line off `rest`, which must not be empty.
Line NextLine(std::string_view& rest);

/// The lines of a file's text. CR LF, a lone LF and a lone CR each end a line; a line end at the very end of
/// the text does not start another line.
std::vector<std::string_view> Lines(std::string_view text);

/// ANSI code page to UTF-16 and back. A character that the other side lacks becomes its best fit or "?".
std::wstring ToWide(std::string_view text);
std::string ToNarrow(std::wstring_view text);

/// UTF-8 to UTF-16 and back, without loss where the text is valid.
std::wstring FromUtf8(std::string_view text);
std::string ToUtf8(std::wstring_view text);

} // namespace common
