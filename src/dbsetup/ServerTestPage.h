#pragma once

#include "dbsetup/ServerTestPage.ids.h"
#include "dbsetup/SetUpServer.h"
#include "gui/TabPanel.h"

/// Tests whether MySQL answers on this computer.
class ServerTestPage final : public gui::TabPage {
public:
    ServerTestPage(gui::TabPanel& panel, dbsetup::SetUpServer& server)
        : TabPage(panel, IDD_ServerTestPage), server_(server) {}

    gui::CommandButton cmdTestMySQL{*this, IDC_ServerTestPage_cmdTestMySQL,
                                    &ServerTestPage::cmdTestMySQL_Click};
    gui::Frame fraConnectionTest{*this, IDC_ServerTestPage_fraConnectionTest};
    gui::Label lblConnectionTest{*this, IDC_ServerTestPage_lblConnectionTest};
    gui::Label lblRunningMySQL{*this, IDC_ServerTestPage_lblRunningMySQL};

private:
    void cmdTestMySQL_Click();

    dbsetup::SetUpServer& server_;
};
