#include "accounts/frmAccountChanges.h"
#include "accounts/frmPrivilegeFile.h"
#include "Editor.h"

TEST_F(EditorTest, ThePrivilegeFileIsClearedAndBroughtBackInItsWindow) {
    const std::string all = "100002,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1\r\n";
    support::WriteFile(privilegeFile, "header\r\n" + all + "100003" + kNone + "\r\n100002" + kNone + "\r\n");
    Load();
    {
        gui::Local<frmPrivilegeFile> file(editor.AccountsDB);
        file->Load();
        const auto rows = [&] {
            std::string texts;
            for (int i = 0; i < file->lstRows.ListCount(); ++i) {
                for (std::size_t column = 0; column < 4; ++column)
                    texts += file->lstRows.Text(static_cast<std::size_t>(i), column) + "|";
                texts += "\n";
            }
            return texts;
        };
        EXPECT_EQ(rows(), "100003||no account - the next one gets this number|game master without "
                          "privileges|\n100002|bravo|double row, does not count|game master without "
                          "privileges|\n100002|bravo||all|\n");
        EXPECT_FALSE(file->cmdBringBack.Enabled());
        for (const int answer : {IDNO, IDYES}) {
            boxes.Answer(answer);
            Press(file->cmdClear);
            EXPECT_EQ(file->cmdClear.Enabled(), answer == IDNO);
        }
        EXPECT_EQ(boxes.Texts().back(),
                  "Remove 2 rows? The change waits for Save.\n\n100003: no account - the next "
                  "one gets this number\n100002: double row, does not count");
        EXPECT_EQ(rows(), "100002|bravo||all|\n");
        EXPECT_EQ(file->lblFindings.Caption(), "Every row belongs to an account.");
    }
    Press(editor.cmdSave);
    EXPECT_EQ(PrivilegeRows(), all);
    Choose("bravo");
    editor.chkIsGM.Value(0);
    Press(editor.cmdSave);
    EXPECT_EQ(PrivilegeRows(), "");
    boxes.Clear();
    Press(editor.cmdFind);
    const support::Meanwhile bringBack([&, pressed = false]() mutable {
        const HWND window = FindWindowA(nullptr, "Kerno Tools :: Privilege File");
        if (!IsWindowVisible(window) || !IsWindowEnabled(window))
            return;
        if (!std::exchange(pressed, true)) {
            boxes.Answer(IDYES);
            SendMessageA(GetDlgItem(window, IDC_frmPrivilegeFile_cmdBringBack), BM_CLICK, 0, 0);
        } else if (boxes.Seen().size() == 1) {
            // What stands in the fields is not up to date, and must not be kept.
            editor.FindBox()->txtAccountName.Text("alpha");
            SendMessageA(window, WM_CLOSE, 0, 0);
        }
    });
    Press(editor.cmdPrivilegeFile);
    EXPECT_TRUE(boxes.Texts().at(0).ends_with("\n\nbravo (100002): no game master -> all"))
        << boxes.Texts()[0];
    EXPECT_EQ(Shown(), "bravo|100002|b|1|b@x|1111111111111111");
    Press(editor.cmdSave);
    EXPECT_EQ(PrivilegeRows(), all);
}

TEST_F(EditorTest, WhatWillBeSavedIsCountedAndCanBeTakenBack) {
    Load();
    EXPECT_EQ(editor.lblWaiting.Caption(), "");
    editor.txtEmail.Text("typed");
    EXPECT_EQ(editor.lblWaiting.Caption(), "1 account waits for Save");
    editor.txtEmail.Text("a@x");
    EXPECT_FALSE(editor.cmdChanges.Enabled());
    editor.chkIsGM.Value(1);
    Choose("bravo");
    boxes.Answer(IDNO);
    Press(editor.cmdDeleteAccount);
    EXPECT_EQ(editor.lblWaiting.Caption(), "1 account waits for Save");
    boxes.Answer(IDYES);
    Press(editor.cmdDeleteAccount);
    boxes.Clear();
    EXPECT_EQ(editor.lblWaiting.Caption(), "2 accounts wait for Save");
    {
        const support::Meanwhile takeBack([] {
            const HWND list = FindWindowA(nullptr, "Kerno Tools :: Changes That Wait For Save");
            if (IsWindowVisible(list)) {
                SendMessageA(GetDlgItem(list, IDC_frmAccountChanges_cmdTakeBack), BM_CLICK, 0, 0);
                SendMessageA(GetDlgItem(list, IDC_frmAccountChanges_cmdClose), BM_CLICK, 0, 0);
            }
        });
        Press(editor.cmdChanges);
    }
    EXPECT_EQ(editor.lblWaiting.Caption(), "1 account waits for Save");
    Choose("bravo");
    EXPECT_EQ(Shown(), "bravo|100002|b|1|b@x|1100000000000000");
    frmAccountChanges list(editor.AccountsDB);
    list.Load();
    ASSERT_EQ(list.lstChanges.ListCount(), 1);
    EXPECT_EQ(list.lstChanges.Text(0, 3), "game master without privileges");
}

TEST_F(EditorTest, AccountsThatLookAlikeAreChosenByTheirRow) {
    const std::string unseen(2, '?');
    root.Execute("ALTER TABLE glogin.account MODIFY Name varchar(24) CHARACTER SET utf8mb4");
    root.Execute(
        "INSERT INTO glogin.account (AID, Name, Pass) VALUES (100010, _utf8mb4 x'E4B8ADE69687', 'one'), "
        "(100011, _utf8mb4 x'E69687E4B8AD', 'two')");
    Load();
    editor.cboAccountName.ListIndex(4);
    EXPECT_EQ(Shown(), unseen + "|100011|two|0||0000000000000000");
    EXPECT_EQ(editor.lblSelected.Caption(),
              "Selected account: " + unseen +
                  " (100011). Its name has characters that cannot be shown here.");
    editor.txtAccountPassword.Text("changed");
    editor.cboAccountName.ListIndex(3);
    EXPECT_EQ(editor.txtAccountPassword.Text(), "one");
    Choose("alpha");
    editor.cboAccountName.Text(unseen);
    Press(editor.cmdDeleteAccount);
    EXPECT_TRUE(Said().back().starts_with("There are several accounts that look like '" + unseen + "'."));
    editor.cboAccountName.ListIndex(3);
    boxes.Answer(IDYES);
    Press(editor.cmdDeleteAccount);
    Press(editor.cmdSave);
    EXPECT_EQ(Said().back(), "Account saved successfully");
    EXPECT_EQ(support::Rows(root, "SELECT AID, HEX(Name), Pass FROM glogin.account WHERE AID > 100004"),
              Texts{"100011|E69687E4B8AD|changed"});
}

TEST_F(EditorTest, WhatWasTypedIsNotLostByWhatHappensToOtherAccounts) {
    Load();
    editor.txtAccountPassword.Text("typed");
    editor.cboAccountName.Text("Charlie");
    boxes.Answer(IDYES);
    Press(editor.cmdDeleteAccount);
    EXPECT_EQ(Shown(), "alpha|100001|typed|0|a@x|0000000000000000");
    boxes.Clear();
    {
        const support::Meanwhile close([] {
            const HWND list = FindWindowA(nullptr, "Kerno Tools :: Changes That Wait For Save");
            if (IsWindowVisible(list))
                SendMessageA(list, WM_CLOSE, 0, 0);
        });
        Press(editor.cmdChanges);
    }
    EXPECT_EQ(editor.cboAccountName.ListCount(), 2);
    EXPECT_EQ(Shown(), "alpha|100001|typed|0|a@x|0000000000000000");
    Fill("bravo", "100001");
    editor.txtEmail.Text("kept");
    Choose("bravo");
    EXPECT_EQ(Said(), Texts());
    Choose("alpha");
    Fill("bravo2", "100002");
    Choose("bravo");
    EXPECT_EQ(Said(), Texts{kIDTaken});
    EXPECT_EQ(Shown(), "alpha|100002|typed|0|kept|0000000000000000");
}

TEST_F(EditorTest, TheListFindsByNumberMailAndPrivileges) {
    Load();
    Press(editor.cmdList);
    frmAccountList& list = *editor.ListBox();
    const auto found = [&](const char* part, bool masters) {
        list.chkGameMasters.Value(masters);
        list.txtSearch.Text(part);
        std::string names;
        for (int i = 0; i < list.lstAccounts.ListCount(); ++i)
            names += list.lstAccounts.Text(static_cast<std::size_t>(i), 0) + " ";
        return names;
    };
    EXPECT_EQ(found("", false), "alpha bravo Charlie ");
    EXPECT_EQ(found("C@", false), "Charlie ");
    EXPECT_EQ(found("0000", true), "bravo ");
    Press(list.cmdShow);
    EXPECT_EQ(editor.txtAccountID.Text(), "100002");
    EXPECT_EQ(found("zz", false), "");
    EXPECT_FALSE(list.cmdShow.Enabled());
}

TEST_F(EditorTest, TypingFindsANameAndEnterShowsIt) {
    Load();
    editor.Show();
    editor.txtEmail.Text("changed");
    Type("ch");
    EXPECT_EQ(editor.cboAccountName.Text(), "ch");
    EXPECT_EQ(editor.txtAccountID.Text(), "100001");
    Type("ch\r");
    EXPECT_EQ(Shown(), "Charlie|100004|c|0|c@x|0000000000000000");
    Choose("alpha");
    EXPECT_EQ(editor.txtEmail.Text(), "changed");
    // Whatever the chosen name begins with was a search, letter case aside, however it was chosen.
    const HWND list = editor.cboAccountName.Window();
    for (const char* typed : {"BR", "bravo"}) {
        Choose("alpha");
        Type(typed);
        SendMessageA(list, CB_SETCURSEL, 1, 0);
        SendMessageA(editor.Window(), WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(list), CBN_SELCHANGE),
                     reinterpret_cast<LPARAM>(list));
        EXPECT_EQ(Shown(), "bravo|100002|b|1|b@x|1100000000000000");
        EXPECT_EQ(editor.cboAccountName.Names().At(0), "alpha");
    }
    Type("Char");
    Press(editor.cmdFind);
    editor.FindBox()->txtAccountName.Text("charl");
    EXPECT_EQ(editor.cboAccountName.Names().At(1), "bravo");
    EXPECT_EQ(editor.txtAccountID.Text(), "100004");
    // Any other text is a new name.
    Type("delta");
    Choose("alpha");
    EXPECT_EQ(editor.cboAccountName.Names().At(2), "delta");
}

TEST_F(EditorTest, TheSearchBoxWalksToTheEnd) {
    root.Execute("INSERT INTO glogin.account (AID, Name) VALUES (100010, 'ALbert'), (100011, 'al')");
    Load();
    Choose("Charlie");
    Press(editor.cmdFind);
    frmFindAccount& find = *editor.FindBox();
    find.txtAccountName.Text("zz");
    EXPECT_EQ(editor.cboAccountName.Text(), "Charlie");
    find.txtAccountName.Text("aL");
    for (const char* name : {"alpha", "ALbert", "al"}) {
        EXPECT_EQ(editor.cboAccountName.Text(), name);
        EXPECT_TRUE(boxes.Seen().empty());
        Press(find.cmdNext);
    }
    EXPECT_EQ(Said(), Texts{"There is no more accounts that match"});
    // It stays open when an account is deleted, and may choose while that is told.
    boxes.Answer(IDYES).Answer(IDOK, [&find] { find.txtAccountName.Text("br"); });
    editor.cboAccountName.Text("Charlie");
    Press(editor.cmdDeleteAccount);
    Press(editor.cmdSave);
    EXPECT_EQ(Said().back(), "Account saved successfully");
    EXPECT_EQ(Table(), (Texts{before[0], before[1], "100010|ALbert||0|", "100011|al||0|"}));
    Press(editor.cmdCancel);
    EXPECT_EQ(editor.FindBox(), nullptr);
}
