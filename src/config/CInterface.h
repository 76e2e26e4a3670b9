#pragma once

#include "common/Property.h"

#include <cstdint>
#include <string>

/// A network interface as the system's table showed it when it was read. The counters are the system's
/// unsigned 32 bits taken as signed ones; past 2,147,483,647 they read as negative numbers.
class CInterface {
public:
    using Text = common::Property<std::string>;
    using Long = common::Property<std::int32_t>;

    Text InterfaceDescription;
    Long OutputQueueLength;
    Long OutgoingErrors;
    Long DiscardedOutgoingPackets;
    Long NonunicastPacketsSent;
    Long UnicastPacketsSent;
    Long OctetsSent;
    Long UnknownProtocolPackets;
    Long IncomingErrors;
    Long DiscardedIncomingPackets;
    Long NonunicastPacketsReceived;
    Long MaximumTransmissionUnit;
    Long UnicastPacketsReceived;
    Long OctetsReceived;
    Long LastChange;
    Long OperationalStatus;
    Long AdminStatus;
    Text AdapterAddress;
    Long Speed;
    Long InterfaceType;
    Long InterfaceIndex;
    Text InterfaceName;
};
