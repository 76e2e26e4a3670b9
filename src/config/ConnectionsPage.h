#pragma once

#include "config/ConnectionsPage.ids.h"
#include "gui/TabPanel.h"
#include "gui/Text.h"
#include "settings/clsINI.h"

/// By which name, address and ports the servers are reached.
class ConnectionsPage final : public gui::TabPage {
public:
    /// `kTools` says how the address is detected.
    ConnectionsPage(gui::TabPanel& panel, const clsINI& kTools)
        : TabPage(panel, IDD_ConnectionsPage), kTools_(kTools) {}

    gui::TextBox txtServerName{*this, IDC_ConnectionsPage_txtServerName};
    gui::TextBox txtServerIP{*this, IDC_ConnectionsPage_txtServerIP};
    gui::CommandButton cmdEnterIP{*this, IDC_ConnectionsPage_cmdEnterIP, &ConnectionsPage::cmdEnterIP_Click};
    gui::TextBox txtLoginPort{*this, IDC_ConnectionsPage_txtLoginPort};
    gui::TextBox txtCharaPort{*this, IDC_ConnectionsPage_txtCharaPort};
    gui::TextBox txtGamePort{*this, IDC_ConnectionsPage_txtGamePort};

private:
    void cmdEnterIP_Click();

    const clsINI& kTools_;
};
