#pragma once

#include <cstdint>
#include <optional>

namespace config {

/// A number for each direction.
struct Traffic {
    double received = 0;
    double sent = 0;
};

/// Turns the totals of all network interfaces, read once a second, into what has been carried since the start
/// and at what speed.
class TrafficMeter {
public:
    /// `baseline`: the totals, in bytes, from which on is counted.
    explicit TrafficMeter(const Traffic& baseline = {}) : baseline_(baseline) {}

    struct Figures {
        Traffic amount;               ///< kilobytes since the start
        std::optional<Traffic> speed; ///< kilobytes since the previous tick; none while one direction of the
                                      ///< previous tick had not counted anything yet
    };

    /// `totals` in bytes, within the signed 32 bits of the interface counters.
    Figures Tick(const Traffic& totals);

private:
    Traffic baseline_;
    std::int32_t previousReceived_ = 0;
    std::int32_t previousSent_ = 0;
};

} // namespace config
