#include "config/CIpHelper.h"

#include "common/Text.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <limits>

namespace config {

namespace {

using Long = common::Property<std::int32_t>;

constexpr struct {
    Long CInterface::*property;
    DWORD MIB_IFROW::*field;
} kNumbers[] = {
    {&CInterface::OutputQueueLength, &MIB_IFROW::dwOutQLen},
    {&CInterface::OutgoingErrors, &MIB_IFROW::dwOutErrors},
    {&CInterface::DiscardedOutgoingPackets, &MIB_IFROW::dwOutDiscards},
    {&CInterface::NonunicastPacketsSent, &MIB_IFROW::dwOutNUcastPkts},
    {&CInterface::UnicastPacketsSent, &MIB_IFROW::dwOutUcastPkts},
    {&CInterface::OctetsSent, &MIB_IFROW::dwOutOctets},
    {&CInterface::UnknownProtocolPackets, &MIB_IFROW::dwInUnknownProtos},
    {&CInterface::IncomingErrors, &MIB_IFROW::dwInErrors},
    {&CInterface::DiscardedIncomingPackets, &MIB_IFROW::dwInDiscards},
    {&CInterface::NonunicastPacketsReceived, &MIB_IFROW::dwInNUcastPkts},
    {&CInterface::MaximumTransmissionUnit, &MIB_IFROW::dwMtu},
    {&CInterface::UnicastPacketsReceived, &MIB_IFROW::dwInUcastPkts},
    {&CInterface::OctetsReceived, &MIB_IFROW::dwInOctets},
    {&CInterface::LastChange, &MIB_IFROW::dwLastChange},
    {&CInterface::OperationalStatus, &MIB_IFROW::dwOperStatus},
    {&CInterface::AdminStatus, &MIB_IFROW::dwAdminStatus},
    {&CInterface::Speed, &MIB_IFROW::dwSpeed},
    {&CInterface::InterfaceType, &MIB_IFROW::dwType},
    {&CInterface::InterfaceIndex, &MIB_IFROW::dwIndex},
};

std::string AddressText(std::span<const BYTE> address) {
    std::string text;
    for (const BYTE byte : address) {
        char digits[4];
        std::snprintf(digits, sizeof digits, text.empty() ? "%02X" : "-%02X", byte);
        text += digits;
    }
    return text;
}

template <typename T, std::size_t N> std::span<const T> First(const T (&field)[N], DWORD length) {
    return std::span<const T>(field).first(std::min<std::size_t>(length, N));
}

} // namespace

CInterface InterfaceOfRow(const MIB_IFROW& row) {
    CInterface result;
    for (const auto& number : kNumbers)
        (result.*number.property)(static_cast<std::int32_t>(row.*number.field));
    const auto description = First(row.bDescr, row.dwDescrLen);
    result.InterfaceDescription(std::string(description.begin(), description.end()));
    result.AdapterAddress(AddressText(First(row.bPhysAddr, row.dwPhysAddrLen)));
    const std::wstring_view name(row.wszName, std::size(row.wszName));
    result.InterfaceName(common::ToNarrow(name.substr(0, name.find(L'\0'))));
    return result;
}

namespace {

/// A sum that 32 bits cannot hold is not formed: the total stays.
void AddToTotal(std::int32_t& total, std::int32_t octets) {
    using Limits = std::numeric_limits<std::int32_t>;
    const std::int64_t sum = std::int64_t{total} + octets;
    if (sum >= Limits::min() && sum <= Limits::max())
        total = static_cast<std::int32_t>(sum);
}

} // namespace

} // namespace config

std::shared_ptr<CInterfaces> CIpHelper::Interfaces() {
    interfaces_ = std::make_shared<CInterfaces>();
    InitInterfaces(*interfaces_);
    return interfaces_;
}

void CIpHelper::InitInterfaces(CInterfaces& interfaces) {
    ULONG size = 0;
    std::vector<std::byte> buffer;
    std::span<const MIB_IFROW> rows;
    if (GetIfTable(nullptr, &size, FALSE) != ERROR_NOT_SUPPORTED) {
        // A row of slack, or the table would be refused when an interface comes up between the two calls.
        size = std::max<ULONG>(size, sizeof(MIB_IFTABLE)) + sizeof(MIB_IFROW);
        buffer.resize(size);
        auto* table = reinterpret_cast<MIB_IFTABLE*>(buffer.data());
        if (GetIfTable(table, &size, FALSE) == NO_ERROR)
            rows = {table->table, table->dwNumEntries};
    }
    InitInterfaces(interfaces, rows);
}

void CIpHelper::InitInterfaces(CInterfaces& interfaces, std::span<const MIB_IFROW> rows) {
    received_ = 0;
    sent_ = 0;
    for (const MIB_IFROW& row : rows) {
        auto next = std::make_unique<CInterface>(config::InterfaceOfRow(row));
        if (!common::ContainsIgnoreCase(next->InterfaceDescription(), "loop")) {
            config::AddToTotal(received_, next->OctetsReceived());
            config::AddToTotal(sent_, next->OctetsSent());
        }
        interfaces.Add(next);
    }
}
