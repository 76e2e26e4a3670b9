#pragma once

#include "config/CInterfaces.h"

#include <winsock2.h>

#include <iphlpapi.h>

#include <memory>
#include <span>

/// The machine's network interfaces and how many bytes they have carried, loop-back ones left out.
class CIpHelper {
public:
    /// Reads the system's table afresh, and the totals with it.
    std::shared_ptr<CInterfaces> Interfaces();
    void Interfaces(std::shared_ptr<CInterfaces> interfaces) { interfaces_ = std::move(interfaces); }

    /// Totals of the last reading, -2,147,483,648 to 2,147,483,647.
    double BytesReceived() const { return received_; }
    double BytesSent() const { return sent_; }

    /// Appends the system's interfaces to `interfaces` and makes the totals theirs. A table that cannot be
    /// read has no rows.
    void InitInterfaces(CInterfaces& interfaces);

    /// The same for the given rows.
    void InitInterfaces(CInterfaces& interfaces, std::span<const MIB_IFROW> rows);

private:
    std::shared_ptr<CInterfaces> interfaces_ = std::make_shared<CInterfaces>();
    std::int32_t received_ = 0;
    std::int32_t sent_ = 0;
};

namespace config {

/// What a row of the system's table says. Lengths that exceed their field are cut to it.
CInterface InterfaceOfRow(const MIB_IFROW& row);

} // namespace config
