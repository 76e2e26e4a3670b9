#include "common/Numbers.h"

#include "common/RuntimeError.h"
#include "common/Text.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>

namespace common {

namespace {

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

/// Length of the decimal number at the start of `text`: sign, digits with one point, exponent. 0 for none.
std::size_t NumberPrefix(std::string_view text) {
    std::size_t at = 0;
    const auto digits = [&] {
        const auto from = at;
        while (at < text.size() && IsDigit(text[at]))
            ++at;
        return at - from;
    };
    if (at < text.size() && (text[at] == '+' || text[at] == '-'))
        ++at;
    std::size_t mantissa = digits();
    if (at < text.size() && text[at] == '.') {
        ++at;
        mantissa += digits();
    }
    if (mantissa == 0)
        return 0;
    const auto end = at;
    if (at < text.size() && (text[at] == 'e' || text[at] == 'E')) {
        ++at;
        if (at < text.size() && (text[at] == '+' || text[at] == '-'))
            ++at;
        if (digits() > 0)
            return at;
    }
    return end;
}

double Parse(std::string_view number) {
    return std::strtod(std::string(number).c_str(), nullptr);
}

template <typename Int> Int Round(double value) {
    const double whole = std::nearbyint(value);
    if (!(whole >= std::numeric_limits<Int>::min() && whole <= std::numeric_limits<Int>::max()))
        throw RuntimeError(kOverflow);
    return static_cast<Int>(whole);
}

double ParseWhole(std::string_view text) {
    const std::string number = Trim(text);
    if (number.empty() || NumberPrefix(number) != number.size())
        throw RuntimeError(kTypeMismatch);
    return Parse(number);
}

} // namespace

double Val(std::string_view text) {
    std::string dense;
    for (const char c : text)
        if (c != ' ' && c != '\t' && c != '\n')
            dense += c;
    return Parse(std::string_view(dense).substr(0, NumberPrefix(dense)));
}

std::int16_t CInt(double value) {
    return Round<std::int16_t>(value);
}
std::int32_t CLng(double value) {
    return Round<std::int32_t>(value);
}
std::int16_t CInt(std::string_view text) {
    return CInt(ParseWhole(text));
}
std::int32_t CLng(std::string_view text) {
    return CLng(ParseWhole(text));
}

std::string NumberText(double value) {
    char text[40];
    std::snprintf(text, sizeof text, "%.15g", value);
    return text;
}

std::string ThousandsText(double value) {
    char digits[340];
    std::snprintf(digits, sizeof digits, "%.0f", std::round(std::fabs(value)));
    std::string text = digits;
    for (auto at = static_cast<std::ptrdiff_t>(text.size()) - 3; at > 0; at -= 3)
        text.insert(static_cast<std::size_t>(at), ",");
    return value <= -0.5 ? "-" + text : text;
}

std::string CountText(std::uint64_t count) {
    return ThousandsText(static_cast<double>(count));
}

std::string SecondsText(std::chrono::nanoseconds time) {
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(time).count();
    return std::to_string(seconds) + (seconds == 1 ? " second" : " seconds");
}

} // namespace common
