#pragma once

#include "Accounts.h"
#include "accounts/frmAccountEditor.h"
#include "gui/Application.h"
#include "support/MessageBoxes.h"

#include <string>
#include <vector>

using Texts = std::vector<std::string>;

inline const std::string kNameTaken = "Account Name is already taken";
inline const std::string kIDTaken = "Account ID is already taken";

/// The account editor over the accounts of AccountsTest.
class EditorTest : public AccountsTest {
protected:
    ~EditorTest() override { editor.Unload(); }

    void Load() {
        editor.Load();
        EXPECT_TRUE(support::Settle());
    }
    void Press(gui::CommandButton& button) {
        button.Press();
        EXPECT_TRUE(support::Settle());
    }
    void Choose(const std::string& name) {
        editor.cboAccountName.ListIndex(editor.cboAccountName.Names().IndexOf(name));
        EXPECT_TRUE(support::Settle());
    }
    std::string Shown() const {
        std::string shown = editor.cboAccountName.Text() + "|" + editor.txtAccountID.Text() + "|" +
                            editor.txtAccountPassword.Text() + "|" +
                            std::to_string(editor.cboSex.ListIndex()) + "|" + editor.txtEmail.Text() + "|" +
                            std::to_string(editor.chkIsGM.Value());
        for (const gui::CheckBox* box : editor.PrivilegeBoxes)
            shown += std::to_string(box->Value());
        return shown;
    }
    void Fill(const std::string& name, const std::string& id) {
        editor.cboAccountName.Text(name);
        editor.txtAccountID.Text(id);
    }
    /// Types into the name's field as the keyboard does.
    void Type(const std::string& keys) {
        COMBOBOXINFO info{};
        info.cbSize = sizeof info;
        GetComboBoxInfo(editor.cboAccountName.Window(), &info);
        SendMessageA(info.hwndItem, EM_SETSEL, 0, -1);
        for (const char key : keys)
            PostMessageA(info.hwndItem, key == '\r' ? WM_KEYDOWN : WM_CHAR, static_cast<WPARAM>(key), 0);
        support::DispatchPending();
    }
    /// The texts since the last call, without the reasons behind our own.
    Texts Said() {
        EXPECT_TRUE(support::Settle());
        Texts texts;
        for (const support::SeenBox& box : boxes.Seen()) {
            EXPECT_EQ(box.title, "Kerno Tools :: Accounts Editor");
            texts.push_back(box.text.substr(0, box.text.find("\n\n")));
        }
        boxes.Clear();
        return texts;
    }

    support::MessageBoxes boxes;
    frmAccountEditor editor;
};
