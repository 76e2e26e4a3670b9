#pragma once

#include "dbsetup/fraAccounts.h"
#include "dbsetup/fraDatabaseCheck.h"
#include "dbsetup/fraFinish.h"
#include "dbsetup/fraIntroduction.h"
#include "dbsetup/fraRepair.h"
#include "dbsetup/fraServerTest.h"
#include "dbsetup/frmMySQLSetUp.ids.h"
#include "dbsetup/SetUpServer.h"

/// The set-up wizard: prepares MySQL for the servers in four steps, each on a page that can be taken alone.
class frmMySQLSetUp final : public gui::Form {
public:
    frmMySQLSetUp() : Form(IDD_frmMySQLSetUp) {}

private:
    dbsetup::SetUpServer server_{[this] { return databaseCheck.Administrator(); }};

public:
    gui::TabPanel mstMySQL{*this, IDC_frmMySQLSetUp_mstMySQL, &frmMySQLSetUp::mstMySQL_Click};
    fraIntroduction introduction{mstMySQL};
    fraServerTest serverTest{mstMySQL, server_};
    fraDatabaseCheck databaseCheck{mstMySQL, server_};
    fraRepair repair{mstMySQL, server_};
    fraAccounts accounts{mstMySQL, server_};
    fraFinish finish{mstMySQL};
    gui::CommandButton cmdPrevious{*this, IDC_frmMySQLSetUp_cmdPrevious, &frmMySQLSetUp::cmdPrevious_Click};
    gui::CommandButton cmdNext{*this, IDC_frmMySQLSetUp_cmdNext, &frmMySQLSetUp::cmdNext_Click};
    gui::CommandButton cmdClose{*this, IDC_frmMySQLSetUp_cmdClose, &frmMySQLSetUp::cmdClose_Click};

private:
    void Form_Load() override;
    void Form_Unload() override { server_.Close(); }
    void Form_Error(const RuntimeError& error) override;
    gui::CommandButton* CancelButton() override { return &cmdClose; }

    void mstMySQL_Click();
    void cmdPrevious_Click() { mstMySQL.Tab(mstMySQL.Tab() - 1); }
    void cmdNext_Click();
    void cmdClose_Click() { Unload(); }

    bool OnLastTab() const { return mstMySQL.Tab() == mstMySQL.Tabs() - 1; }
};
