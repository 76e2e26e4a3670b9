#include "accounts/frmAccountConflict.ids.h"
#include "accounts/frmAccountEditor.ids.h"
#include "accounts/frmFindAccount.ids.h"
#include "app/frmMainMenu.ids.h"
#include "Database.h"
#include "gui/frmWaiting.ids.h"
#include "Stops.h"

#include <cstdio>

namespace {

void FindGunnar(HWND window) {
    Type(window, IDC_frmFindAccount_txtAccountName, "gun");
    SendMessageA(ControlOf(window, IDC_frmFindAccount_txtAccountName), EM_SETSEL, 3, 3);
}

/// The caret stands on the first letter otherwise.
void ShowWholeName(HWND window) {
    const HWND name = ControlOf(window, IDC_frmAccountEditor_cboAccountName);
    SendMessageA(name, CB_SETEDITSEL, 0, MAKELPARAM(50, 50));
}

/// The file as hands have left it: rows without an account, one twice, and a file of the day before.
void OpenWithOddPrivileges(HWND window) {
    const std::string path = "C:\\Kerno\\database\\id_table";
    if (FILE* file = std::fopen((path + ".txt").c_str(), "ab")) {
        std::fputs("100008,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1\r\n100431,1,0,0,0,0,0,0,1,0,0,0,0,0,0,0\r\n"
                   "100001,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1\r\n",
                   file);
        std::fclose(file);
    }
    CopyFileA((path + ".txt").c_str(), (path + " 2026-05-02 21.14.05.120.bak").c_str(), FALSE);
    Press(IDC_frmMainMenu_cmdAccountEditor)(window);
}

/// Presses the button while somebody else has the accounts.
void ReloadLocked(HWND window) {
    TellDatabase("LOCK TABLES glogin.account WRITE");
    Press(IDC_frmAccountEditor_cmdReload)(window);
}

/// Changes two fields of the account that is shown.
void ChangeAccount(HWND window) {
    // The window before this one has hardly gone, and the account is shown anew after it.
    Sleep(500);
    Type(window, IDC_frmAccountEditor_txtAccountPassword, "new secret");
    Type(window, IDC_frmAccountEditor_txtEmail, "gm@example.org");
    Press(IDC_frmAccountEditor_cmdRemoveAllPrivileges)(window);
}

/// Saves what somebody else has changed meanwhile.
void ChangeElsewhereAndSave(HWND window) {
    TellDatabase("UPDATE glogin.account SET Pass = 'moonlight', Gender = 1 WHERE Name = 'marian'");
    Press(IDC_frmAccountEditor_cmdSave)(window);
}

void SaveConflict(HWND window) {
    Press(IDC_frmAccountConflict_cmdSave)(window);
    AnswerBox("Account saved successfully", IDOK);
}

/// Cancels what is waited for, and closes the box that says so.
void CancelWait(HWND window) {
    Press(IDC_frmWaiting_cmdCancel)(window);
    AnswerBox("Kerno Tools failed to reload", IDOK);
    TellDatabase("UNLOCK TABLES");
}

} // namespace

Stop AccountEditor() {
    return {"account-editor",
            OpenWithOddPrivileges,
            {{"account-list", Press(IDC_frmAccountEditor_cmdList)},
             {"privilege-file", Press(IDC_frmAccountEditor_cmdPrivilegeFile)},
             {.name = "account-editor-waiting", .open = ChangeAccount, .same = true},
             {"account-changes", Press(IDC_frmAccountEditor_cmdChanges)},
             {.name = "account-conflict", .open = ChangeElsewhereAndSave, .leave = SaveConflict},
             {.name = "waiting", .open = ReloadLocked, .leave = CancelWait},
             {"find-account", Press(IDC_frmAccountEditor_cmdFind), {}, FindGunnar}},
            ShowWholeName};
}
