#pragma once

#include "dbsetup/fraServerTest.ids.h"
#include "dbsetup/SetUpServer.h"
#include "gui/TabPanel.h"
#include "gui/Text.h"

/// Tests whether MySQL answers on this computer.
class fraServerTest final : public gui::TabPage {
public:
    fraServerTest(gui::TabPanel& panel, dbsetup::SetUpServer& server)
        : TabPage(panel, IDD_fraServerTest), server_(server) {}

    gui::CommandButton cmdTestMySQL{*this, IDC_fraServerTest_cmdTestMySQL,
                                    &fraServerTest::cmdTestMySQL_Click};
    gui::Frame fraConnectionTest{*this, IDC_fraServerTest_fraConnectionTest};
    gui::Label lblConnectionTest{*this, IDC_fraServerTest_lblConnectionTest};
    gui::Label lblRunningMySQL{*this, IDC_fraServerTest_lblRunningMySQL};
    /// What the server is and takes, or what keeps it from answering, to copy.
    gui::TextBox txtServerCard{*this, IDC_fraServerTest_txtServerCard};

private:
    gui::Task<> cmdTestMySQL_Click();

    dbsetup::SetUpServer& server_;
};
