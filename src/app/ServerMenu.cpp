#include "app/ServerMenu.h"

#include "common/Files.h"
#include "gui/modSystemTray.h"

#include <algorithm>

using namespace modServerControl;

bool ServerMenu::Start(Server server) {
    if (!AskAndStart(server))
        return false;
    RefreshTip();
    return true;
}

void ServerMenu::Shutdown(Server server) {
    modServerControl::Shutdown(server);
    RefreshTip();
}

void ServerMenu::Restart(Server server) {
    modServerControl::Shutdown(server);
    StartWithPriority(server);
}

void ServerMenu::StartKerno() {
    // KernoPath ends in a separator already. Windows takes two in a row for one.
    const bool complete = std::ranges::all_of(kServers, [](Server server) {
        return common::FileExists(KernoPath() + "\\" + ComponentOf(server).executable);
    });
    if (!complete) {
        form_.MsgBoxNow("Can't find Kerno executables in current directory");
        return;
    }
    if (std::ranges::all_of(kServers, [this](Server server) { return AskAndStart(server); }))
        RefreshTip();
}

void ServerMenu::ShutdownKerno() {
    ShutdownAll();
    modSystemTray::TrayModifyIcon(form_, kKernoInactive);
}

void ServerMenu::RestartKerno() {
    ShutdownAll();
    for (const Server server : kServers)
        StartWithPriority(server);
}

void ServerMenu::ShowKerno() {
    std::ranges::for_each(kServers, Show);
}
void ServerMenu::HideKerno() {
    std::ranges::for_each(kServers, Hide);
}

bool ServerMenu::AskAndStart(Server server) {
    if (IsRunning(server) && form_.MsgBoxNow(SecondInstanceQuestion(server), MB_YESNO) != IDYES)
        return false;
    StartWithPriority(server);
    return true;
}

void ServerMenu::StartWithPriority(Server server) {
    modServerControl::StartWithPriority(server, kTools_);
}

void ServerMenu::RefreshTip() {
    modSystemTray::TrayModifyIcon(form_, ServerStatusText());
}
