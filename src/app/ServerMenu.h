#pragma once

#include "gui/Form.h"
#include "servers/modServerControl.h"
#include "settings/clsINI.h"

/// What the tray menu's entries do to the servers, with their questions and the icon's tooltip. Priorities
/// come from kTools.ini.
class ServerMenu {
public:
    ServerMenu(gui::Form& form, const clsINI& kTools) : form_(form), kTools_(kTools) {}

    /// Starts the server, after a question when it runs already. False when the answer was No.
    bool Start(modServerControl::Server server);
    void Shutdown(modServerControl::Server server);
    void Restart(modServerControl::Server server);

    /// All three, unless an executable is missing; a No at any question ends the whole action.
    void StartKerno();
    void ShutdownKerno();
    void RestartKerno();
    void ShowKerno();
    void HideKerno();

private:
    bool AskAndStart(modServerControl::Server server);
    void StartWithPriority(modServerControl::Server server);
    void RefreshTip();

    gui::Form& form_;
    const clsINI& kTools_;
};
