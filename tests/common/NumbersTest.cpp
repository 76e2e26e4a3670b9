#include "common/Numbers.h"
#include "support/Test.h"

namespace {

using namespace common;

TEST(Numbers, ValReadsTheLeadingNumber) {
    const std::pair<const char*, double> cases[] = {
        {"", 0},     {"abc", 0},     {"12 apples", 12}, {" 1 2 ", 12}, {"-3", -3},    {"+4", 4},
        {".5", 0.5}, {"1.5.5", 1.5}, {"1e3", 1000},     {"1e", 1},     {"-", 0},      {"2-3", 2},
        {"0x10", 0}, {"1,5", 1},     {"\t7", 7},        {".", 0},      {"1E+2x", 100}};
    for (const auto& [text, value] : cases)
        EXPECT_EQ(Val(text), value) << text;
}

TEST(Numbers, ConversionsRoundHalvesToEvenAndRefuseWhatDoesNotFit) {
    for (const auto& [number, rounded] : {std::pair{2.5, 2}, {3.5, 4}, {-1.5, -2}})
        EXPECT_EQ(CInt(number), rounded);
    EXPECT_EQ(CLng(" 2147483647 "), 2147483647);
    EXPECT_EQ(support::ErrorNumber([] { CInt(32767.5); }), kOverflow);
    EXPECT_EQ(support::ErrorNumber([] { CLng("2147483648"); }), kOverflow);
    EXPECT_EQ(support::ErrorNumber([] { CLng("1e999"); }), kOverflow);
    for (const char* text : {"", " ", "abc", "12 apples", "1e"})
        EXPECT_EQ(support::ErrorNumber([&] { CInt(text); }), kTypeMismatch) << text;
}

TEST(Numbers, ThousandsTextGroupsFromTheRight) {
    for (const auto& [number, text] :
         {std::pair{0.5, "1"}, {999.4, "999"}, {1234567, "1,234,567"}, {-123456, "-123,456"}, {-0.2, "0"}})
        EXPECT_EQ(ThousandsText(number), text);
}

} // namespace
