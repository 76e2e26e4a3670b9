#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

/// Conversions between text and numbers with the rules that the settings files were written by.
namespace common {

/// The number at the start of `text` ("12 apples" is 12), blanks left out; 0 when there is none.
double Val(std::string_view text);

/// Rounded to the nearest whole number, halves to the even one. Raises 6 (overflow) out of the type's range.
std::int16_t CInt(double value);
std::int32_t CLng(double value);

/// The whole text as a number (blanks around it allowed), rounded as above. Raises 13 (type mismatch) when
/// the text is not a number, 6 when it does not fit.
std::int16_t CInt(std::string_view text);
std::int32_t CLng(std::string_view text);

/// Shortest plain form of a number, up to 15 digits, without a leading blank: "60", "2.5".
std::string NumberText(double value);

/// A number as "1,234,567": no decimals, halves rounded away from zero.
std::string ThousandsText(double value);
/// The same of a number of things.
std::string CountText(std::uint64_t count);
/// "1 second", "12 seconds": whole ones, what is left over cut off.
std::string SecondsText(std::chrono::nanoseconds time);

} // namespace common
