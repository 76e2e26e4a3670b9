#include "config/CIpHelper.h"
#include "support/Test.h"

#include <cstring>

namespace {

MIB_IFROW Row(const std::string& description, DWORD received, DWORD sent) {
    MIB_IFROW row{};
    row.dwDescrLen = static_cast<DWORD>(description.size());
    std::memcpy(row.bDescr, description.data(), description.size());
    row.dwInOctets = received;
    row.dwOutOctets = sent;
    return row;
}

TEST(IpHelper, DecodesARow) {
    // Every number field holds its own place in the row, so that swapped properties show.
    MIB_IFROW row{};
    for (DWORD at = 0; at < sizeof row / sizeof(DWORD); ++at)
        std::memcpy(reinterpret_cast<DWORD*>(&row) + at, &at, sizeof at);
    std::fill(std::begin(row.wszName), std::end(row.wszName), L'n');
    std::fill(std::begin(row.bDescr), std::end(row.bDescr), BYTE{'d'});
    const BYTE address[] = {0x00, 0x05, 0xAB, 0xFF, 0x10, 0x0A, 0x77, 0x88};
    std::memcpy(row.bPhysAddr, address, sizeof address);
    row.dwPhysAddrLen = 6;
    row.dwOutQLen = 0xFFFFFFFF;
    row.dwDescrLen = 100'000;

    CInterface decoded = config::InterfaceOfRow(row);
    EXPECT_EQ(decoded.InterfaceName(), std::string(256, 'n'));
    EXPECT_EQ(decoded.InterfaceDescription(), std::string(256, 'd'));
    EXPECT_EQ(decoded.AdapterAddress(), "00-05-AB-FF-10-0A");
    EXPECT_EQ(decoded.OutputQueueLength(), -1);
    // 128 places of the name come first; the address and its length take three after the speed.
    const std::int32_t beforeTheAddress[] = {decoded.InterfaceIndex(), decoded.InterfaceType(),
                                             decoded.MaximumTransmissionUnit(), decoded.Speed()};
    for (std::int32_t place = 128; const std::int32_t number : beforeTheAddress)
        EXPECT_EQ(number, place++);
    const std::int32_t behindIt[] = {decoded.AdminStatus(),
                                     decoded.OperationalStatus(),
                                     decoded.LastChange(),
                                     decoded.OctetsReceived(),
                                     decoded.UnicastPacketsReceived(),
                                     decoded.NonunicastPacketsReceived(),
                                     decoded.DiscardedIncomingPackets(),
                                     decoded.IncomingErrors(),
                                     decoded.UnknownProtocolPackets(),
                                     decoded.OctetsSent(),
                                     decoded.UnicastPacketsSent(),
                                     decoded.NonunicastPacketsSent(),
                                     decoded.DiscardedOutgoingPackets(),
                                     decoded.OutgoingErrors()};
    for (std::int32_t place = 135; const std::int32_t number : behindIt)
        EXPECT_EQ(number, place++);
    row.dwPhysAddrLen = 0;
    row.wszName[0] = 0;
    decoded = config::InterfaceOfRow(row);
    EXPECT_EQ(decoded.AdapterAddress() + decoded.InterfaceName(), "");
}

TEST(IpHelper, TotalsLeaveLoopBackOutAndStayAtAnOverflow) {
    const MIB_IFROW rows[] = {Row("eth", 1000, 0x7FFFFFFE), Row("Software LOOPback", 7, 7),
                              Row("wlan", 0x7FFFFFFF, 1), Row("loop", 0, 0), Row("tun", 5, 1)};
    CIpHelper helper;
    CInterfaces interfaces;
    helper.InitInterfaces(interfaces, rows);
    EXPECT_EQ(interfaces.Count(), 5u);
    interfaces.Remove(2);
    EXPECT_EQ(interfaces.Item(2).InterfaceDescription(), "wlan");
    EXPECT_THROW(interfaces.Item(0), RuntimeError);
    EXPECT_EQ(helper.BytesReceived(), 1005);
    EXPECT_EQ(helper.BytesSent(), 2147483647);
}

TEST(IpHelper, ReadsTheMachinesOwnTableAfreshAtEachUse) {
    CIpHelper helper;
    const auto first = helper.Interfaces();
    ASSERT_GE(first->Count(), 1u);
    for (const auto& each : first->NewEnum())
        EXPECT_NE(each->InterfaceDescription(), "");
    EXPECT_NE(helper.Interfaces(), first);
}

} // namespace
