#include "app/frmMainMenu.ids.h"
#include "dbsetup/fraAccounts.ids.h"
#include "dbsetup/fraDatabaseCheck.ids.h"
#include "dbsetup/fraRepair.ids.h"
#include "dbsetup/fraServerTest.ids.h"
#include "Pictures.h"
#include "Stops.h"

#include <utility>

namespace {

/// Logs in as the administrator of the playground's database server, and runs the test and the check.
void TestAndCheck(HWND window) {
    Type(window, IDC_fraDatabaseCheck_txtRootUsername, "root");
    for (const auto& [button, result] :
         {std::pair{IDC_fraServerTest_cmdTestMySQL, IDC_fraServerTest_lblRunningMySQL},
          std::pair{IDC_fraDatabaseCheck_cmdCheckDB, IDC_fraDatabaseCheck_lblAMGlobalTables}}) {
        const std::string before = TextOf(ControlOf(window, result));
        Press(button)(window);
        Expect(window, "no result came",
               [&, label = result] { return TextOf(ControlOf(window, label)) != before; });
    }
}

/// Sets up the servers' logins with one user name and password that the wizard asks about, or with good ones.
Act SetUpAccounts(const char* user, const char* password) {
    return [user, password](HWND window) {
        Type(window, IDC_fraDatabaseCheck_txtRootUsername, "root");
        Type(window, IDC_fraAccounts_txtGloginUsername, user);
        Type(window, IDC_fraAccounts_txtGloginPassword, password);
        Press(IDC_fraAccounts_cmdSetupAccounts)(window);
    };
}

/// As on a server without the databases: they are deleted, and the check shows it.
void DeleteAndCheck(HWND window) {
    Type(window, IDC_fraDatabaseCheck_txtRootUsername, "root");
    Press(IDC_fraRepair_cmdDeleteDatabase)(window);
    AnswerBox("This action will destroy", IDYES);
    // The deletion goes on behind the box, and the wizard does one thing at a time.
    Sleep(5000);
    Press(IDC_fraDatabaseCheck_cmdCheckDB)(window);
    Expect(window, "the databases are still there",
           [window] { return TextOf(ControlOf(window, IDC_fraDatabaseCheck_lblAMGlobal)) == "Not Existed"; });
}

/// Says Yes or OK to this box and to each that follows it, with a picture of those, up to the one that tells
/// of success.
void AgreeToAll(HWND box) {
    const HWND owner = GetWindow(box, GW_OWNER);
    for (int number = 2;; ++number) {
        const bool last = TextOf(GetDlgItem(box, 0xFFFF)).starts_with("Kerno SQL accounts setup successful");
        const HWND yes = GetDlgItem(box, IDYES);
        const HWND answered = box;
        PostMessageA(yes ? yes : GetDlgItem(box, IDOK), BM_CLICK, 0, 0);
        if (last)
            return;
        box = nullptr;
        Expect(owner, "no box came after the one before", [&] {
            for (HWND each : ToolWindows())
                if (each != answered && GetWindow(each, GW_OWNER) == owner && IsOfClass(each, "#32770"))
                    box = each;
            return box != nullptr;
        });
        if (!box)
            return;
        TakePictures("mysql-setup-accounts-" + std::to_string(number), box);
    }
}

} // namespace

Stop SetUpOfToday() {
    return {"mysql-setup",
            Press(IDM_frmMainMenu_mnuSetUpMySQL),
            {{"mysql-setup-doubts", SetUpAccounts("root", "")},
             {.name = "mysql-setup-accounts",
              .open = SetUpAccounts("kerno_login", "login-secret"),
              .leave = AgreeToAll}},
            TestAndCheck};
}

Stop FreshSetUp() {
    return {"mysql-setup-fresh",
            Press(IDM_frmMainMenu_mnuSetUpMySQL),
            {{"mysql-setup-engine", Press(IDC_fraRepair_cmdRepairDatabase)}},
            DeleteAndCheck,
            2};
}
