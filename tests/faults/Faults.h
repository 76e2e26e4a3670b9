#pragma once

#include "common/Files.h"
#include "settings/clsINI.h"
#include "settings/kToolsSettings.h"
#include "support/Servers.h"
#include "support/TempFolder.h"
#include "support/Wait.h"

#include <gtest/gtest.h>
#include <psapi.h>
#include <windows.h>

#include <cstdlib>
#include <ostream>

/// How often a fault is tried: `usually` times in every run of the tests, `full` times when the environment
/// has KTOOLS_FULL_FAULTS.
inline int Times(int usually, int full) {
    return std::getenv("KTOOLS_FULL_FAULTS") ? full : usually;
}

/// What this process holds of the system.
struct Holdings {
    long handles = 0;
    long gdiObjects = 0;
    long userObjects = 0;
    long kilobytes = 0;

    static Holdings Now() {
        DWORD handles = 0;
        GetProcessHandleCount(GetCurrentProcess(), &handles);
        PROCESS_MEMORY_COUNTERS_EX memory{};
        memory.cb = sizeof memory;
        GetProcessMemoryInfo(GetCurrentProcess(), reinterpret_cast<PROCESS_MEMORY_COUNTERS*>(&memory),
                             sizeof memory);
        return {static_cast<long>(handles),
                static_cast<long>(GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS)),
                static_cast<long>(GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS)),
                static_cast<long>(memory.PrivateUsage / 1024)};
    }
    friend std::ostream& operator<<(std::ostream& out, const Holdings& held) {
        return out << held.handles << " handles, " << held.gdiObjects << " GDI and " << held.userObjects
                   << " user objects, " << held.kilobytes << " KB";
    }
};

/// The tool's own folder and the servers' folder, with settings and without a running server.
class Faults : public testing::Test {
protected:
    Faults() {
        common::ProgramFolder(program.Path());
        settings::CreateDefaultSettings(kTools.INIPath());
        kTools.INIProperty(settings::key::kKernoPath, servers.Path());
        kTools.INIProperty(settings::key::kMySQLPath, program.Path() + "\\");
        support::WriteFile(kerno.INIPath(), "IP=10.1.2.3\r\n");
        // A name that is an address needs no name server.
        kTools.INIProperty(settings::key::kIPDetectionMethod, "1");
        kTools.INIProperty(settings::key::kDynamicHostname, "10.1.2.3");
    }
    ~Faults() override { common::ProgramFolder(oldFolder_); }

private:
    std::string oldFolder_ = common::ProgramFolder();

protected:
    support::TempFolder program;
    support::ServerFolder servers;
    clsINI kTools{program / "kTools.ini"};
    clsINI kerno{servers.Path() + "Kerno.ini"};
};
