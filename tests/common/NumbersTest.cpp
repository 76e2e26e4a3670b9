#include "common/Numbers.h"

#include "support/Errors.h"

#include <gtest/gtest.h>

namespace {

using namespace common;

TEST(Numbers, ValReadsTheLeadingNumber) {
    const struct {
        const char* text;
        double value;
    } cases[] = {{"", 0},     {"abc", 0},     {"12 apples", 12}, {" 1 2 ", 12}, {"-3", -3},    {"+4", 4},
                 {".5", 0.5}, {"1.5.5", 1.5}, {"1e3", 1000},     {"1e", 1},     {"-", 0},      {"2-3", 2},
                 {"0x10", 0}, {"1,5", 1},     {"\t7", 7},        {".", 0},      {"1E+2x", 100}};
    for (const auto& c : cases)
        EXPECT_EQ(Val(c.text), c.value) << c.text;
}

TEST(Numbers, ConversionsRoundHalvesToEvenAndRefuseWhatDoesNotFit) {
    EXPECT_EQ(CInt(2.5), 2);
    EXPECT_EQ(CInt(3.5), 4);
    EXPECT_EQ(CInt("-1.5"), -2);
    EXPECT_EQ(CLng(" 2147483647 "), 2147483647);
    EXPECT_EQ(support::ErrorNumber([] { CInt(32767.5); }), kOverflow);
    EXPECT_EQ(support::ErrorNumber([] { CLng("2147483648"); }), kOverflow);
    EXPECT_EQ(support::ErrorNumber([] { CLng("1e999"); }), kOverflow);
    for (const char* text : {"", " ", "abc", "12 apples", "1e"})
        EXPECT_EQ(support::ErrorNumber([&] { CInt(text); }), kTypeMismatch) << text;
}

TEST(Numbers, ThousandsTextGroupsFromTheRight) {
    EXPECT_EQ(ThousandsText(0), "0");
    EXPECT_EQ(ThousandsText(0.5), "1");
    EXPECT_EQ(ThousandsText(999.4), "999");
    EXPECT_EQ(ThousandsText(1234567), "1,234,567");
    EXPECT_EQ(ThousandsText(-123456), "-123,456");
    EXPECT_EQ(ThousandsText(-0.2), "0");
}

} // namespace
