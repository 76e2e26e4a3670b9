#include "dbsetup/frmMySQLSetUp.h"

#include "database/Error.h"
#include "dbsetup/SetUpMessages.h"

void frmMySQLSetUp::Form_Load() {
    databaseCheck.Counted = [this](const std::string& contents) { repair.Losses(contents); };
}

void frmMySQLSetUp::Form_Error(const RuntimeError& error) {
    // Whoever has pressed Cancel knows.
    if (error.Number() == database::kCancelled)
        return;
    Tell(dbsetup::ErrorMessage(error), MB_ICONERROR, dbsetup::kErrorTitle);
}

void frmMySQLSetUp::mstMySQL_Click() {
    const bool onFirstTab = mstMySQL.Tab() == 0;
    cmdPrevious.Enabled(!onFirstTab);
    cmdNext.Caption(OnLastTab() ? "Finish" : "Next");
}

void frmMySQLSetUp::cmdNext_Click() {
    if (OnLastTab())
        Unload();
    else
        mstMySQL.Tab(mstMySQL.Tab() + 1);
}
