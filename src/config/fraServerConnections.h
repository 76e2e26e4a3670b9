#pragma once

#include "config/fraServerConnections.ids.h"
#include "gui/TabPanel.h"
#include "gui/Text.h"
#include "settings/clsINI.h"

/// By which name, address and ports the servers are reached.
class fraServerConnections final : public gui::TabPage {
public:
    /// `kTools` says how the address is detected.
    fraServerConnections(gui::TabPanel& panel, const clsINI& kTools)
        : TabPage(panel, IDD_fraServerConnections), kTools_(kTools) {}

    gui::TextBox txtServerName{*this, IDC_fraServerConnections_txtServerName};
    gui::TextBox txtServerIP{*this, IDC_fraServerConnections_txtServerIP};
    gui::CommandButton cmdEnterIP{*this, IDC_fraServerConnections_cmdEnterIP,
                                  &fraServerConnections::cmdEnterIP_Click};
    gui::TextBox txtLoginPort{*this, IDC_fraServerConnections_txtLoginPort};
    gui::TextBox txtCharaPort{*this, IDC_fraServerConnections_txtCharaPort};
    gui::TextBox txtGamePort{*this, IDC_fraServerConnections_txtGamePort};

private:
    gui::Task<> cmdEnterIP_Click();

    const clsINI& kTools_;
};
