#include "servers/Control.h"

#include "common/Files.h"
#include "common/Numbers.h"
#include "common/RuntimeError.h"
#include "common/StartProgram.h"
#include "gui/Application.h"
#include "gui/modGUI.h"
#include "gui/TaskWaits.h"
#include "servers/Detection.h"
#include "servers/Dialogs.h"
#include "servers/ForeignWindows.h"
#include "servers/Priority.h"
#include "servers/Processes.h"
#include "servers/ServerWatch.h"
#include "servers/ZonePause.h"

#include <cstdio>
#include <exception>

namespace modServerControl {

namespace {

/// ERROR_SUCCESS, or the system's error.
DWORD Launch(Server server) {
    const std::string path = ExecutablePath(server);
    if (!common::FileExists(path))
        return ERROR_FILE_NOT_FOUND;
    // The servers look for their files in the current folder.
    if (!SetCurrentDirectoryA(KernoPath().c_str()))
        return GetLastError();
    // The tool wants no box of the system's about a drive; what a server wants is its own business.
    if (!common::StartProgram({.path = path, .flags = CREATE_DEFAULT_ERROR_MODE, .show = SW_SHOWMINIMIZED}))
        return GetLastError();
    Launches().Note(server, GetTickCount64());
    return ERROR_SUCCESS;
}

/// `setOne`: modGUI's procedure that shows or hides one window.
std::int16_t SetVisibility(Server server, std::int16_t (*setOne)(HWND)) {
    bool found = false;
    FindServerWindow(server, ComponentOf(server).mainWindowClass, [&](HWND window) {
        setOne(window);
        found = true;
        return false;
    });
    if (!found)
        return 0;
    const HWND application = FindWindowWhere(nullptr, kApplicationWindowClass,
                                             [&](HWND window) { return IsAppWindow(server, window); });
    if (!application)
        return 0;
    setOne(application);
    return 1;
}

} // namespace

std::int16_t Start(Server server) {
    return Launch(server) == ERROR_SUCCESS;
}

gui::Task<std::int16_t> Shutdown(Server server) {
    // A server does not close while one of its dialogs waits for an answer.
    co_await CloseServerDialogs();
    const HWND posted = FindServerWindow(server, ComponentOf(server).mainWindowClass, [](HWND window) {
        return PostMessageA(window, WM_CLOSE, 0, 0) != FALSE;
    });
    if (!posted)
        co_return 0;
    try {
        if (server == Server::Zone)
            co_await ZoneShutdownPause();
    } catch (const RuntimeError&) {
        co_return 0;
    }
    co_await CloseServerDialogs();
    co_return 1;
}

std::int16_t Show(Server server) {
    return SetVisibility(server, modGUI::ShowWindowAsyncNormal);
}
std::int16_t Hide(Server server) {
    return SetVisibility(server, modGUI::HideWindowAsync);
}

namespace {

/// One line of the journal about a launch, written when it is known what came of it, or when the tool is
/// left.
struct LaunchLine {
    ~LaunchLine() { journal::WriteTo(path, asker, text); }

    const std::string path = journal::Path();
    journal::Asker asker;
    std::string text;
};

gui::Task<> ReportLaunch(Server server, journal::Asker asker, std::string text) {
    constexpr ULONGLONG kLongest = 60'000;
    const ULONGLONG start = GetTickCount64();
    LaunchLine line{.asker = asker, .text = std::move(text)};
    while (!IsRunning(server)) {
        const ULONGLONG passed = GetTickCount64() - start;
        if (passed > kLongest || ProcessesOf(server).empty()) {
            line.text += passed > kLongest ? "; no window after a minute" : "; it ended at once";
            co_return;
        }
        co_await gui::Delay(std::chrono::milliseconds(100));
    }
    char seconds[40];
    std::snprintf(seconds, sizeof seconds, "; window after %.1f s",
                  static_cast<double>(GetTickCount64() - start) / 1000);
    line.text += seconds;
}

} // namespace

std::int16_t StartWithPriority(Server server, const clsINI& priorities, journal::Asker asker,
                               const std::string& why) {
    const DWORD error = Launch(server);
    const std::string text =
        ComponentOf(server).name + std::string(" server: ") + (why.empty() ? "" : why + "; ");
    if (error == ERROR_SUCCESS)
        gui::ToolTasks().Start(ReportLaunch(server, asker, text + "started"));
    else
        journal::Write(
            asker, text + "could not be started: " + common::FileErrorText(error, ExecutablePath(server)));
    const std::string_view key = ComponentOf(server).priorityKey;
    try {
        if (!key.empty())
            SetPriority(server, common::CInt(common::Val(priorities.INIProperty(key))));
    } catch (const RuntimeError& raised) {
        journal::Write(asker, text + "has no priority: " + raised.Description());
        throw;
    }
    return error == ERROR_SUCCESS;
}

gui::Task<std::int16_t> ShutdownFor(journal::Asker asker, Server server) {
    const HWND window = MainWindow(server);
    const char* const outcome = !window                 ? " server: does not run, not closed"
                                : HasMoreRights(window) ? " server: runs as administrator, cannot be closed"
                                                        : " server: told to close";
    const std::int16_t status = co_await Shutdown(server);
    // The zone server's status says nothing of the close: its pause takes it along.
    journal::Write(asker, ComponentOf(server).name + std::string(outcome));
    co_return status;
}

void ForEach(std::span<const Server> servers, const std::function<void(Server)>& action) {
    std::exception_ptr first;
    for (const Server server : servers) {
        try {
            action(server);
        } catch (const RuntimeError&) {
            if (!first)
                first = std::current_exception();
        }
    }
    if (first)
        std::rethrow_exception(first);
}

} // namespace modServerControl
