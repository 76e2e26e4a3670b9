#pragma once

#include "gui/FormSlot.h"
#include "support/MessageBoxes.h"
#include "support/Surroundings.h"

#include <psapi.h>

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
    long windows = 0;
    long kilobytes = 0;

    static Holdings Now() {
        Holdings now;
        PROCESS_MEMORY_COUNTERS memory{};
        GetProcessMemoryInfo(GetCurrentProcess(), &memory, sizeof memory);
        now.kilobytes = static_cast<long>(memory.PagefileUsage / 1024);
        now.handles = HighestNew([] { return CreateEventA(nullptr, TRUE, FALSE, nullptr); }, CloseHandle) / 4;
        now.gdiObjects = HighestNew([] { return CreateSolidBrush(RGB(1, 2, 3)); }, DeleteObject);
        EnumThreadWindows(GetCurrentThreadId(), CountTree, reinterpret_cast<LPARAM>(&now.windows));
        return now;
    }
    friend std::ostream& operator<<(std::ostream& out, const Holdings& held) {
        return out << held.handles << " handles, " << held.gdiObjects << " GDI objects, " << held.windows
                   << " windows, " << held.kilobytes << " KB";
    }

private:
    static BOOL CALLBACK Count(HWND /*window*/, LPARAM count) {
        return ++*reinterpret_cast<long*>(count) > 0;
    }
    static BOOL CALLBACK CountTree(HWND window, LPARAM count) {
        EnumChildWindows(window, Count, count);
        return Count(window, count);
    }

    /// Wine counts neither handles nor GDI objects, but gives a new one the first free place of the process's
    /// table: with more new ones than places that are free in between, the last place moves with the number
    /// of the rest.
    template <class Make, class Free> static long HighestNew(Make make, Free free) {
        std::vector<decltype(make())> made;
        long highest = 0;
        for (int i = 0; i < 2000; ++i) {
            made.push_back(make());
            highest = std::max(highest, static_cast<long>(reinterpret_cast<UINT_PTR>(made.back()) & 0xFFFF));
        }
        std::ranges::for_each(made, free);
        return highest;
    }
};

/// The tool with all of its settings, and no running server.
class Faults : public testing::Test, protected support::Surroundings {
protected:
    Faults() {
        settings::CreateDefaultSettings(kTools.INIPath());
        SetAddress();
    }
    /// Has the control panel close dialogs and keep all servers running.
    void Supervise() {
        using namespace settings::key;
        TurnOn({kEnableErrorDetector, kHandleDialogs, kMaintainServer, kMaintainLoginServer,
                kMaintainCharacterServer, kMaintainZoneServer});
    }
};
