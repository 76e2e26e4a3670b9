#include "config/TrafficMeter.h"

namespace config {

namespace {

constexpr double kKilobyte = 1024;

/// The low 32 bits. The counters turn over after 4 GB, and the distance from a high baseline to a turned-over
/// counter has more than 32 bits: after weeks of running an error here would come at every tick. Taken this
/// way the difference of two amounts is right all the same.
std::int32_t Low32(double bytes) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(static_cast<std::int64_t>(bytes)));
}

} // namespace

TrafficMeter::Figures TrafficMeter::Tick(const Traffic& totals) {
    const Traffic bytes{totals.received - baseline_.received, totals.sent - baseline_.sent};
    Figures figures{{bytes.received / kKilobyte, bytes.sent / kKilobyte}, {}};
    if (previousReceived_ != 0 && previousSent_ != 0)
        figures.speed = Traffic{Low32(bytes.received - previousReceived_) / kKilobyte,
                                Low32(bytes.sent - previousSent_) / kKilobyte};
    previousReceived_ = Low32(bytes.received);
    previousSent_ = Low32(bytes.sent);
    return figures;
}

} // namespace config
