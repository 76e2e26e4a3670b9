#include "common/Text.h"

#include "common/RuntimeError.h"

#include <windows.h>

#include <algorithm>
#include <utility>

namespace common {

std::string Trim(std::string_view text) {
    const auto first = text.find_first_not_of(' ');
    if (first == std::string_view::npos)
        return {};
    return std::string(text.substr(first, text.find_last_not_of(' ') - first + 1));
}

std::string UpperCase(std::string_view text) {
    std::string upper(text);
    CharUpperBuffA(upper.data(), static_cast<DWORD>(upper.size()));
    return upper;
}

bool EqualsIgnoreCase(std::string_view a, std::string_view b) {
    return a.size() == b.size() && UpperCase(a) == UpperCase(b);
}

bool IsAscii(std::string_view text) {
    return std::ranges::all_of(text, [](char letter) { return static_cast<unsigned char>(letter) < 0x80; });
}

std::size_t FindIgnoreCase(std::string_view text, std::string_view part, std::size_t start) {
    return UpperCase(text).find(UpperCase(part), start);
}

bool ContainsIgnoreCase(std::string_view text, std::string_view part) {
    return FindIgnoreCase(text, part) != std::string::npos;
}

std::string ReplaceAll(std::string_view text, std::string_view part, std::string_view with) {
    std::string result;
    std::size_t from = 0;
    for (auto at = text.find(part); at != std::string_view::npos; at = text.find(part, from)) {
        result.append(text.substr(from, at - from)).append(with);
        from = at + part.size();
    }
    return result.append(text.substr(from));
}

std::vector<std::string> Split(std::string_view text, char separator) {
    std::vector<std::string> pieces;
    std::size_t from = 0;
    for (auto at = text.find(separator); at != std::string_view::npos; at = text.find(separator, from)) {
        pieces.emplace_back(text.substr(from, at - from));
        from = at + 1;
    }
    pieces.emplace_back(text.substr(from));
    return pieces;
}

Line NextLine(std::string_view& rest) {
    // find_first_of looks up each character in the set, which takes several times as long, and the find_if of
    // std::ranges takes half as long again.
    const auto isEnd = [](char each) { return each == '\r' || each == '\n'; };
    const auto length =
        static_cast<std::size_t>(std::find_if(rest.begin(), rest.end(), isEnd) - rest.begin());
    const std::string_view after = rest.substr(length);
    const Line line{rest.substr(0, length), after.substr(0, after.starts_with(kLineEnd) ? 2 : 1)};
    rest.remove_prefix(length + line.end.size());
    return line;
}

std::vector<std::string_view> Lines(std::string_view text) {
    std::vector<std::string_view> lines;
    while (!text.empty())
        lines.push_back(NextLine(text).text);
    return lines;
}

namespace {

/// Raises 6 where the system's functions could not be told the length.
template <typename View> int LengthOf(const View& text) {
    if (!std::in_range<int>(text.size()))
        throw RuntimeError(kOverflow);
    return static_cast<int>(text.size());
}

std::wstring Widened(UINT codePage, std::string_view text) {
    const int length = LengthOf(text);
    const int size = MultiByteToWideChar(codePage, 0, text.data(), length, nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(size), L'\0');
    MultiByteToWideChar(codePage, 0, text.data(), length, wide.data(), size);
    return wide;
}

std::string Narrowed(UINT codePage, std::wstring_view text) {
    const int length = LengthOf(text);
    const int size = WideCharToMultiByte(codePage, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
    std::string narrow(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(codePage, 0, text.data(), length, narrow.data(), size, nullptr, nullptr);
    return narrow;
}

} // namespace

std::wstring ToWide(std::string_view text) {
    return Widened(CP_ACP, text);
}

std::string ToNarrow(std::wstring_view text) {
    return Narrowed(CP_ACP, text);
}

std::wstring FromUtf8(std::string_view text) {
    return Widened(CP_UTF8, text);
}

std::string ToUtf8(std::wstring_view text) {
    return Narrowed(CP_UTF8, text);
}

} // namespace common
