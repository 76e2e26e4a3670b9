#include "supervision/IPDetection.h"

#include <gtest/gtest.h>

#include <regex>

namespace {

using namespace supervision;

TEST(IPDetection, FindsTheLastAddressOfANameThatResolves) {
    EXPECT_EQ(DetectHostAddresses("localhost")[0], "127.0.0.1");
    EXPECT_EQ(DetectHostAddresses("10.1.2.255")[0], "10.1.2.255");
    // The top-level name "invalid" is reserved for never existing.
    for (const std::string& name :
         {std::string("nobody.invalid"), std::string("no host"), std::string(300, 'x'),
          std::string(10'000, 'x'), std::string("\xFF\x01%s%n")})
        EXPECT_EQ(DetectHostAddresses(name)[0], "") << name;
    const std::string own = DetectLocalAddresses()[0];
    EXPECT_TRUE(std::regex_match(own, std::regex(R"(\d+\.\d+\.\d+\.\d+)"))) << own;
}

TEST(IPDetection, TextsOfAddressesAndFailures) {
    const std::byte address[] = {std::byte{192}, std::byte{0}, std::byte{5}, std::byte{255}, std::byte{9}};
    EXPECT_EQ(DottedText(std::span(address).first(4)), "192.0.5.255");
    EXPECT_EQ(DottedText(address), "192.0.5.255.9");
    EXPECT_EQ(DottedText({}), "");

    const std::string old = "Your Winsocks Implementation only supports up to version";
    const struct {
        std::uint16_t version;
        std::string text;
    } cases[] = {{0x0001, old + "0.1"},
                 {0x0900, old + "9.0"},
                 {0x0101, "Winsocks Error [10091] occured when starting Winsocks"},
                 {0x0002, "Winsocks Error [10091] occured when starting Winsocks"}};
    for (const auto& c : cases)
        EXPECT_EQ(StartFailureText(10091, c.version), c.text);
}

} // namespace
