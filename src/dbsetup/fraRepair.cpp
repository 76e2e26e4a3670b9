#include "dbsetup/fraRepair.h"

#include "dbsetup/Repair.h"
#include "dbsetup/SetUpMessages.h"

gui::Task<> fraRepair::cmdRepairDatabase_Click() {
    std::optional<gui::Waiting> waiting(std::in_place, *this);
    co_await server_.LogIn();
    dbsetup::AllowEngineForm allow = [this, &waiting](const database::Error& rejection) {
        return AllowEngineForm(rejection, waiting);
    };
    const bool repaired = co_await dbsetup::Repair(server_, allow);
    waiting.reset();
    if (repaired)
        co_await MsgBox("Database Repaired", MB_ICONINFORMATION, dbsetup::kTitle);
}

gui::Task<bool> fraRepair::AllowEngineForm(database::Error rejection, std::optional<gui::Waiting>& waiting) {
    waiting.reset();
    const int answer =
        co_await MsgBox(dbsetup::ErrorMessage(rejection) +
                            "\n\nServers of today no longer know the clause TYPE=MyISAM. Create the "
                            "missing tables with ENGINE=MyISAM instead ?\n\nNo leaves the databases "
                            "as they are now.",
                        MB_YESNO | MB_ICONQUESTION, dbsetup::kErrorTitle);
    waiting.emplace(*this);
    co_return answer == IDYES;
}

gui::Task<> fraRepair::cmdDeleteDatabase_Click() {
    const int answer =
        co_await MsgBox("This action will destroy all data currently in your Kerno database. Continue ?",
                        MB_YESNO | MB_ICONEXCLAMATION | MB_DEFBUTTON2, dbsetup::kTitle);
    if (answer != IDYES)
        co_return;
    const gui::Waiting waiting(*this);
    co_await server_.LogIn();
    co_await dbsetup::DropDatabases(server_);
    Losses({});
}

void fraRepair::Losses(const std::string& text) {
    lblLosses.Caption(text.empty() ? "Step 2 tells what is in them." : "There are " + text + ".");
}
