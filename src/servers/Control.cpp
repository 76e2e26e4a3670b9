#include "servers/Control.h"

#include "common/Files.h"
#include "common/Numbers.h"
#include "common/RuntimeError.h"
#include "gui/Application.h"
#include "gui/modGUI.h"
#include "servers/Detection.h"
#include "servers/Dialogs.h"
#include "servers/ForeignWindows.h"
#include "servers/Priority.h"
#include "servers/ZonePause.h"

namespace modServerControl {

namespace {

bool Launch(const std::string& path) {
    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESHOWWINDOW;
    startup.wShowWindow = SW_SHOWMINIMIZED;
    PROCESS_INFORMATION started{};
    // In quotation marks, or the server would take a blank in its path for the end of it.
    std::string commandLine = '"' + path + '"';
    if (!CreateProcessA(path.c_str(), commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                        &startup, &started))
        return false;
    CloseHandle(started.hThread);
    CloseHandle(started.hProcess);
    return true;
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
    const std::string path = ExecutablePath(server);
    if (!common::FileExists(path))
        return 0;
    // The servers look for their files in the current folder.
    if (!SetCurrentDirectoryA(KernoPath().c_str()))
        return 0;
    return Launch(path) ? 1 : 0;
}

std::int16_t Shutdown(Server server) {
    const gui::Uninterrupted uninterrupted;
    // A server does not close while one of its dialogs waits for an answer.
    CloseServerDialogs();
    const HWND posted = FindServerWindow(server, ComponentOf(server).mainWindowClass, [](HWND window) {
        return PostMessageA(window, WM_CLOSE, 0, 0) != FALSE;
    });
    if (!posted)
        return 0;
    try {
        if (server == Server::Zone)
            ZoneShutdownPause();
    } catch (const RuntimeError&) {
        return 0;
    }
    CloseServerDialogs();
    return 1;
}

std::int16_t Show(Server server) {
    return SetVisibility(server, modGUI::ShowWindowAsyncNormal);
}
std::int16_t Hide(Server server) {
    return SetVisibility(server, modGUI::HideWindowAsync);
}

std::int16_t StartWithPriority(Server server, const clsINI& priorities) {
    const std::int16_t status = Start(server);
    const std::string_view key = ComponentOf(server).priorityKey;
    if (!key.empty())
        SetPriority(server, common::CInt(common::Val(priorities.INIProperty(key))));
    return status;
}

void StartAllWithPriority(const clsINI& priorities) {
    for (const Server server : kServers)
        StartWithPriority(server, priorities);
}

void ShutdownAll() {
    for (const Server server : kServers)
        Shutdown(server);
}

} // namespace modServerControl
