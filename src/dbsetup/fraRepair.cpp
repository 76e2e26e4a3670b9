#include "dbsetup/fraRepair.h"

#include "dbsetup/Repair.h"
#include "dbsetup/SetUpMessages.h"
#include "gui/WaitCursor.h"

void fraRepair::cmdRepairDatabase_Click() {
    bool repaired = false;
    {
        const gui::WaitCursor waiting;
        server_.LogIn();
        repaired = dbsetup::Repair(
            server_, [this](const database::Error& rejection) { return AllowEngineForm(rejection); });
    }
    if (repaired)
        MsgBoxNow("Database Repaired", MB_ICONINFORMATION, dbsetup::kTitle);
}

bool fraRepair::AllowEngineForm(const database::Error& rejection) {
    const int answer = MsgBoxNow(dbsetup::ErrorMessage(rejection) +
                                     "\n\nServers of today no longer know the clause TYPE=MyISAM. Create the "
                                     "missing tables with ENGINE=MyISAM instead ?\n\nNo leaves the databases "
                                     "as they are now.",
                                 MB_YESNO | MB_ICONQUESTION, dbsetup::kErrorTitle);
    // A wizard that was closed meanwhile has no connection any more.
    return answer == IDYES && Loaded();
}

void fraRepair::cmdDeleteDatabase_Click() {
    if (MsgBoxNow("This action will destroy all data currently in your Kerno database. Continue ?",
                  MB_YESNO | MB_ICONEXCLAMATION | MB_DEFBUTTON2, dbsetup::kTitle) != IDYES ||
        !Loaded())
        return;
    const gui::WaitCursor waiting;
    server_.LogIn();
    dbsetup::DropDatabases(server_);
}
