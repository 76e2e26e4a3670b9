#include "supervision/IPDetection.h"
#include "support/Test.h"

#include <regex>

namespace {

using namespace supervision;

TEST(IPDetection, FindsTheLastAddressOfANameThatResolves) {
    EXPECT_EQ(DetectHostAddresses("localhost").addresses[0], "127.0.0.1");
    EXPECT_EQ(DetectHostAddresses("10.1.2.255").addresses[0], "10.1.2.255");
    // The top-level name "invalid" is reserved for never existing.
    for (const std::string& name : {std::string("nobody.invalid"), std::string(10'000, 'x')})
        EXPECT_EQ(DetectHostAddresses(name).addresses[0], "") << name;
    const std::string own = DetectLocalAddresses().addresses[0];
    EXPECT_TRUE(std::regex_match(own, std::regex(R"(\d+\.\d+\.\d+\.\d+)"))) << own;
}

TEST(IPDetection, TextsOfAddressesAndFailures) {
    const std::byte address[] = {std::byte{192}, std::byte{0}, std::byte{5}, std::byte{255}};
    EXPECT_EQ(DottedText(address), "192.0.5.255");
    EXPECT_EQ(StartFailureText(10091, 0x0900), "Your Winsocks Implementation only supports up to version9.0");
    EXPECT_EQ(StartFailureText(10091, 0x0101), "Winsocks Error [10091] occured when starting Winsocks");
}

} // namespace
