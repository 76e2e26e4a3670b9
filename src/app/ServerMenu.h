#pragma once

#include "gui/Form.h"
#include "servers/modServerControl.h"
#include "settings/clsINI.h"

#include <optional>
#include <string>
#include <vector>

/// What the tray menu's entries do to the servers, with their questions and the icon's tooltip. Priorities
/// come from kTools.ini.
class ServerMenu {
public:
    ServerMenu(gui::Form& form, const clsINI& kTools) : form_(form), kTools_(kTools) {}

    /// Starts the server, after a question when it runs already, is starting, or would not run for long
    /// because a backup has the servers down; not at all while somebody has it down for a restart. False when
    /// it was not started.
    gui::Task<bool> Start(modServerControl::Server server);
    gui::Task<> Shutdown(modServerControl::Server server);
    gui::Task<> Restart(modServerControl::Server server);

    /// All three, unless an executable is missing; one that is not started ends the whole action.
    gui::Task<> StartKerno();
    gui::Task<> ShutdownKerno();
    gui::Task<> RestartKerno();
    void ShowKerno();
    void HideKerno();

    /// Puts the icon with the servers' state there; false when there is none afterwards.
    bool AddIcon();
    /// Changes the icon's tooltip when something else is to be said than what it said last: about a dialog
    /// that does not close, a server that is started again and again, or else the servers' state.
    void FollowServers();

private:
    /// Asks, when a backup has the servers down.
    gui::Task<bool> MayActInBackup();
    gui::Task<> RestartServers(std::vector<modServerControl::Server> servers);
    /// Tells which of the servers was started without its priority, and why.
    void TellPriorities(const std::vector<modServerControl::Server>& servers,
                        const std::optional<RuntimeError>& error);
    /// Tells which of the servers a close does not reach.
    void TellRights(const std::vector<modServerControl::Server>& servers);
    void RefreshTip();

    gui::Form& form_;
    const clsINI& kTools_;
    /// What the tooltip is about.
    std::string told_;
};
