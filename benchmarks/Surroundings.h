#pragma once

#include "Bench.h"
#include "support/Servers.h"
#include "support/TempFolder.h"

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

/// A program folder of its own with a new kTools.ini, and a server folder with the stand-ins, of which none
/// runs yet.
class Surroundings {
public:
    Surroundings();
    ~Surroundings();
    Surroundings(const Surroundings&) = delete;
    Surroundings& operator=(const Surroundings&) = delete;

    /// Starts the three servers.
    void LaunchSuite();

    support::TempFolder program;
    support::ServerFolder servers;

private:
    std::string oldFolder_;
};

} // namespace bench
