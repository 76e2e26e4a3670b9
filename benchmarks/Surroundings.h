#pragma once

#include "Bench.h"
#include "support/Surroundings.h"

/// What the measured windows find around them.
namespace bench {

inline constexpr int kForeignWindows = 500;

/// Top-level windows of another program, as long as the object lives.
class ForeignWindows {
public:
    /// Nobody's class, that of the zone server's main window, or that of dialogs.
    enum class Kind { Other, ZoneLike, Dialogs };

    explicit ForeignWindows(Kind kind);

    /// "500 windows", "500 windows of the zone server's class" and so on.
    static std::string Name(Kind kind);

private:
    Process process_;
};

/// The tool's surroundings with a new kTools.ini. None of the servers runs yet.
class Surroundings : public support::Surroundings {
public:
    Surroundings() { settings::CreateDefaultSettings(kTools.INIPath()); }

    /// Starts the three servers.
    void LaunchSuite();
};

} // namespace bench
