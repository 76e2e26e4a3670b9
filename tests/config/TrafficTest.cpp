#include "config/TrafficGraph.h"
#include "config/TrafficMeter.h"
#include "config/ZoneTitle.h"
#include "support/Test.h"

namespace {

TEST(ZoneTitle, TellsUptimeAndPlayersOrADash) {
    const std::array<const char*, 3> kTitles[] = {
        {"Kerno Zone Server 00:01:02:03 Current Players (Count: 12)", "00:01:02:03", "12"},
        {"KERNO ZONE SERVER 9:0 current server count:  7 ]", "9:0", "7"},
        {"Kerno Zone Server 00:01:02:03", "-", "-"},
        {"Current Players (Count: 12) Kerno Zone Server", "-", "12) Kerno Zone Serve"},
        {"ServerCurrentCount:5", "", ""},
        {"Cur Count: 4)", "-", "4"},
        {"", "-", "-"}};
    for (const auto& [title, uptime, players] : kTitles) {
        const auto status = config::ParseZoneTitle(title);
        EXPECT_EQ(status.uptime, uptime) << title;
        EXPECT_EQ(status.players, players) << title;
    }
}

constexpr double kNone = -1;

struct Tick {
    double received, sent;     // totals
    double incoming, outgoing; // kilobytes
    double download, upload;   // kilobytes a second
};

void ExpectTicks(const config::Traffic& baseline, std::initializer_list<Tick> ticks) {
    config::TrafficMeter meter(baseline);
    for (const Tick& tick : ticks) {
        const auto [amount, speed] = meter.Tick({tick.received, tick.sent});
        const auto [download, upload] = speed.value_or(config::Traffic{kNone, kNone});
        EXPECT_EQ(std::pair(amount.received, amount.sent), std::pair(tick.incoming, tick.outgoing));
        EXPECT_EQ(std::pair(download, upload), std::pair(tick.download, tick.upload)) << tick.received;
    }
}

TEST(TrafficMeter, CountsFromItsFirstTickWithBothDirections) {
    ExpectTicks({1000, 500}, {{1000, 500 + 1024, 0, 1, kNone, kNone},
                              {1000 + 2048, 500 + 1024, 2, 1, kNone, kNone},
                              {1000 + 7168, 500 + 4096, 7, 4, 5, 3},
                              {1000 + 7168, 500 + 4096, 7, 4, 0, 0},
                              {1000 + 6144, 500, 6, 0, -1, -4},
                              {1000 + 6144, 500 + 1024, 6, 1, kNone, kNone}});
    // It goes on where an amount has more than 32 bits.
    constexpr double kGigabyte = 1024.0 * 1024 * 1024;
    constexpr double kGigabyteKb = kGigabyte / 1024;
    ExpectTicks({kGigabyte, 0}, {{kGigabyte + 1024, 1024, 1, 1, kNone, kNone},
                                 // The counter turns over: the amount is about minus three gigabytes.
                                 {-2 * kGigabyte, 2048, -3 * kGigabyteKb, 2, kGigabyteKb - 1, 1},
                                 {-2 * kGigabyte + 4096, 3072, -3 * kGigabyteKb + 4, 3, 4, 1}});
}

TEST(TrafficGraph, ScalesToARoundSpeed) {
    for (const auto& [highest, scale] :
         {std::pair{0.0, 10.0}, {10.0, 10.0}, {10.1, 20.0}, {21.0, 50.0}, {50.5, 100.0}, {99999.0, 100000.0}})
        EXPECT_EQ(config::GraphScale(highest), scale) << highest;
}

} // namespace
