#include "Editor.h"
#include "accounts/frmAccountConflict.h"
#include "gui/frmWaiting.ids.h"

TEST_F(EditorTest, ShowsAccountsAsSoonAsThereIsAServer) {
    support::WriteFile(folder / "Kerno.ini", "gloginname=\r\n");
    DeleteFileA(privilegeFile.c_str());
    Load();
    const std::string notAdvised = "You are advised not to continue as Kerno Tools might not act properly";
    EXPECT_EQ(Said(),
              (Texts{"Kerno Tools failed to connect to SQL server. Please make sure you have set up "
                     "MySQL server properly",
                     notAdvised,
                     "Kerno Tools failed to load GM data. Please make sure all files are in proper place",
                     notAdvised}));
    EXPECT_EQ(Shown(), "|||0||0000000000000000");
    // At 150 % it leaves a screen of 768 lines room for the task bar.
    RECT bounds{};
    GetWindowRect(editor.Window(), &bounds);
    EXPECT_LE((bounds.bottom - bounds.top) * 3 / 2, 768 - 60);
    support::WriteFile(folder / "Kerno.ini", "gloginname=root\r\n");
    support::WriteFile(privilegeFile, std::string("header\r\n100002") + kBroadcast + "\r\n");
    // Reload throws away what waits for Save, privileges too; where it fails, they stay.
    for (int i = 0; i < 2; ++i) {
        Press(editor.cmdReload);
        EXPECT_EQ(editor.cboAccountName.ListCount(), 3);
        Choose("bravo");
        EXPECT_EQ(Shown(), "bravo|100002|b|1|b@x|1100000000000000");
        Press(editor.cmdRemoveAllPrivileges);
        Choose("alpha");
    }
    root.Execute("RENAME TABLE glogin.account TO glogin.away");
    Press(editor.cmdReload);
    EXPECT_TRUE(Said().back().starts_with("Kerno Tools failed to reload the accounts."));
    Choose("bravo");
    EXPECT_EQ(Shown(), "bravo|100002|b|1|b@x|1000000000000000");
    EXPECT_EQ(editor.lblWaiting.Caption(), "1 account waits for Save");
    root.Execute("RENAME TABLE glogin.away TO glogin.account");
    // A header that somebody took away costs the first row its privileges, so it is told.
    support::WriteFile(privilegeFile, std::string("100002") + kBroadcast + "\r\n");
    Press(editor.cmdReload);
    EXPECT_TRUE(Said().back().starts_with("The first line of id_table.txt should be its header"));
}

TEST_F(EditorTest, EditsCarryOverAndWaitForSaveAsAdditionsAndDeletionsDo) {
    // Rows that stand in the file twice go together.
    const std::string privileges =
        std::string("100002") + kBroadcast + "\r\n100004" + kNone + "\r\n100004" + kNone + "\r\n";
    support::WriteFile(privilegeFile, "header\r\n" + privileges);
    Load();
    Choose("Charlie");
    editor.chkIsGM.Value(0);
    Choose("alpha");
    for (const gui::Control* control : {static_cast<const gui::Control*>(&editor.chkWarp),
                                        static_cast<const gui::Control*>(&editor.cmdGiveAllPrivileges),
                                        static_cast<const gui::Control*>(&editor.cmdRemoveAllPrivileges)})
        EXPECT_FALSE(control->Enabled());
    Fill("alpha2", "100009");
    editor.chkIsGM.Value(1);
    EXPECT_TRUE(editor.chkWarp.Enabled());
    Choose("bravo");
    EXPECT_EQ(Shown(), "bravo|100002|b|1|b@x|1100000000000000");
    editor.txtAccountPassword.Text("new");
    editor.cboSex.ListIndex(0);
    // A number that changes takes the privileges with it.
    Press(editor.cmdAutofillID);
    Choose("alpha2");
    EXPECT_EQ(Shown(), "alpha2|100009|a|0|a@x|1000000000000000");
    EXPECT_EQ(Said(), Texts());
    Fill(std::string(24, 'd'), "100005");
    Press(editor.cmdGiveAllPrivileges);
    Press(editor.cmdAddAccount);
    EXPECT_EQ(Said(), Texts{"Account Added"});
    Choose("Charlie");
    for (const int answer : {IDNO, IDYES}) {
        boxes.Answer(answer);
        Press(editor.cmdDeleteAccount);
        EXPECT_EQ(Said().front(), "Are you sure you want to delete account 'Charlie' ?");
        EXPECT_EQ(editor.cboAccountName.Names().IndexOf("Charlie") == -1, answer == IDYES);
    }
    EXPECT_EQ(Table(), before);
    EXPECT_EQ(PrivilegeRows(), privileges);
    Press(editor.cmdSave);
    EXPECT_EQ(Said(), Texts{"Account saved successfully"});
    const Texts saved{"100001|bravo|new|0|b@x", "100005|" + std::string(24, 'd') + "|a|0|a@x",
                      "100009|alpha2|a|0|a@x"};
    EXPECT_EQ(Table(), saved);
    EXPECT_EQ(PrivilegeRows(), std::string("100001") + kBroadcast +
                                   "\r\n100005,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1\r\n100009" + kNone + "\r\n");

    Press(editor.cmdClearAll);
    EXPECT_EQ(Shown(), "|||0||1000000000000000");
    Fill("unsaved", "100006");
    Press(editor.cmdAddAccount);
    Press(editor.cmdCancel);
    EXPECT_EQ(Table(), saved);
}

TEST_F(EditorTest, ChecksComeInOrder) {
    const std::string longMail(30, 'm');
    root.Execute("SET sql_mode = 'NO_AUTO_VALUE_ON_ZERO'");
    root.Execute("ALTER TABLE glogin.account MODIFY Mail varchar(40)");
    root.Execute("INSERT INTO glogin.account VALUES (0, 'odd', '', 0, '" + longMail + "', 0)");
    Load();
    const std::string noNumber = "' is no account number. Please enter a whole number from 1 to 2147483647, "
                                 "or press Autofill";
    const std::string saved = "Account saved successfully";
    const struct {
        std::string name, id, add;
        std::string save = add;
    } cases[] = {
        {"  ", "", "There is no account name specified. It is a compulsory field for an account"},
        {"x", "", "There is no ID specified. It is a compulsory field for an account"},
        {"bravo", "100004", kNameTaken},
        {"x", "100004", kIDTaken},
        {"x", "nine", "The ID 'nine" + noNumber},
        {"x", "2147483648", "The ID '2147483648" + noNumber},
        {std::string(25, 'n'), "5", "The account name has 25 characters. Please shorten it to 24"},
        {"alpha", "100001", kNameTaken, saved},
        {"CHARLIE", "100001", kIDTaken, saved},
    };
    for (const auto& c : cases) {
        Fill(c.name, c.id);
        Press(editor.cmdAddAccount);
        EXPECT_EQ(Said(), Texts{c.add}) << c.name << " " << c.id;
        EXPECT_EQ(editor.cboAccountName.Text() + editor.txtAccountID.Text(), c.name + c.id);
        Press(editor.cmdSave);
        EXPECT_EQ(Said(), Texts{c.save}) << c.name << " " << c.id;
    }
    Fill("Charlie", "100001");
    Choose("bravo");
    EXPECT_EQ(Said(), Texts{kNameTaken});
    EXPECT_EQ(Shown(), "CHARLIE|100001|a|0|a@x|0000000000000000");
    // What the server holds already is no reason to stay with an account.
    Choose("odd");
    Choose("bravo");
    EXPECT_EQ(Said(), Texts());
    EXPECT_EQ(Table()[0], "0|odd||0|" + longMail);
}

TEST_F(EditorTest, ASaveAsksAboutWhatSomebodyElseDid) {
    Load();
    for (const bool decides : {false, true}) {
        root.Execute("UPDATE glogin.account SET Pass='theirs', Mail='theirs@x' WHERE AID=100001");
        editor.txtAccountPassword.Text("mine");
        editor.txtEmail.Text("mine@x");
        const support::Meanwhile decide([&] {
            const HWND question = FindWindowA(nullptr, "Kerno Tools :: Account Changed By Somebody Else");
            const auto press = [&](int id) { SendMessageA(GetDlgItem(question, id), BM_CLICK, 0, 0); };
            if (!IsWindowVisible(question))
                return;
            press(IDC_frmAccountConflict_optMine3);
            press(decides ? IDC_frmAccountConflict_cmdSave : IDC_frmAccountConflict_cmdCancel);
        });
        Press(editor.cmdSave);
        EXPECT_EQ(
            Said().at(0),
            decides ? "Account saved successfully"
                    : "Kerno Tools did not save all changes. These wait under \"Changes...\", where you can "
                      "take them back; all others are saved");
        EXPECT_EQ(Table()[0], decides ? "100001|alpha|mine|0|theirs@x" : "100001|alpha|theirs|0|theirs@x");
    }
    EXPECT_EQ(Shown(), "alpha|100001|mine|0|theirs@x|0000000000000000");
}

TEST_F(EditorTest, ConflictsThatWereDecidedAreSentAlsoWhenTheNextOneIsNot) {
    Load();
    for (const char* name : {"alpha", "bravo"}) {
        Choose(name);
        editor.txtAccountPassword.Text("mine");
    }
    root.Execute("UPDATE glogin.account SET Pass='theirs'");
    const support::Meanwhile decide([&] {
        const HWND question = FindWindowA(nullptr, "Kerno Tools :: Account Changed By Somebody Else");
        const auto press = [&](int id) { SendMessageA(GetDlgItem(question, id), BM_CLICK, 0, 0); };
        if (!IsWindowVisible(question))
            return;
        char account[80] = "";
        GetDlgItemTextA(question, IDC_frmAccountConflict_lblAccount, account, sizeof account);
        press(IDC_frmAccountConflict_optMine3);
        press(std::string(account).find("alpha") < sizeof account ? IDC_frmAccountConflict_cmdSave
                                                                  : IDC_frmAccountConflict_cmdCancel);
    });
    Press(editor.cmdSave);
    EXPECT_TRUE(boxes.Texts().at(0).find("'bravo' (100002): somebody else has changed it") < 200);
    EXPECT_EQ(boxes.Texts()[0].find("alpha"), std::string::npos);
    EXPECT_EQ(Table()[0] + Table()[1], "100001|alpha|mine|0|a@x100002|bravo|theirs|1|b@x");
    EXPECT_EQ(editor.lblWaiting.Caption(), "1 account waits for Save");
}

TEST_F(EditorTest, AServerThatIsSilentCanBeWaitedForAndCancelled) {
    const auto waiting = [] { return FindWindowA(nullptr, "Kerno Tools :: Please Wait"); };
    root.Execute("LOCK TABLES glogin.account WRITE");
    editor.Load();
    ASSERT_TRUE(support::WaitUntil([&] { return IsWindowVisible(waiting()); }));
    // Closing it is cancelling.
    SendMessageA(waiting(), WM_CLOSE, 0, 0);
    EXPECT_EQ(Said().size(), 2u);
    root.Execute("UNLOCK TABLES");
    Press(editor.cmdReload);
    Choose("alpha");
    Press(editor.cmdFind);
    editor.txtEmail.Text("typed");
    const std::string typed = "alpha|100001|a|0|typed|0000000000000000";
    root.Execute("LOCK TABLES glogin.account WRITE");
    for (gui::CommandButton* button : {&editor.cmdReload, &editor.cmdSave}) {
        button->Press();
        ASSERT_TRUE(support::WaitUntil([&] { return IsWindowVisible(waiting()); }));
        EXPECT_FALSE(IsWindowEnabled(editor.Window()));
        // The search box stays open, and may not choose meanwhile.
        editor.FindBox()->txtAccountName.Text("");
        editor.FindBox()->txtAccountName.Text("br");
        EXPECT_NE(editor.txtAccountID.Text(), "100002");
        SendMessageA(GetDlgItem(waiting(), IDC_frmWaiting_cmdCancel), BM_CLICK, 0, 0);
        EXPECT_TRUE(support::Settle());
        EXPECT_EQ(boxes.Texts().at(0),
                  std::string(button == &editor.cmdSave
                                  ? "Kerno Tools failed to save to SQL server. Nothing that you changed is "
                                    "lost. You can save again"
                                  : "Kerno Tools failed to reload the accounts. You can reload again") +
                      "\n\n[3712] Operation has been cancelled by the user.");
        boxes.Clear();
        EXPECT_EQ(Shown(), typed);
        EXPECT_EQ(editor.lblWaiting.Caption(), "1 account waits for Save");
    }
    root.Execute("UNLOCK TABLES");
    Press(editor.cmdSave);
    EXPECT_EQ(Said(), Texts{"Account saved successfully"});
    EXPECT_EQ(Table()[0], "100001|alpha|a|0|typed");
    // The tool can be left meanwhile.
    root.Execute("LOCK TABLES glogin.account WRITE");
    editor.txtEmail.Text("never");
    editor.cmdSave.Press();
    ASSERT_TRUE(support::WaitUntil([&] { return IsWindowVisible(waiting()); }));
    editor.Unload();
    EXPECT_TRUE(support::Settle());
    EXPECT_FALSE(editor.Loaded() || waiting());
    root.Execute("UNLOCK TABLES");
}
