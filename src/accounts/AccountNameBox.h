#pragma once

#include "accounts/NameList.h"
#include "gui/Control.h"

/// The list of account names, whose field is also where a name is edited. Typing completes a name of the
/// list; Enter chooses it. When an entry is chosen that begins with what was typed, letter case aside, that
/// text was a search. Any other text that was typed is the new name of the account that is shown. The
/// completion disappears when the field is left.
///
/// Entries are told apart by their position, as several names may look alike. Those behind the ones in use
/// come into the list a few at a time, because 100,000 of them take longer than anybody waits for a window.
class AccountNameBox final : public gui::Control {
public:
    template <class F>
    AccountNameBox(F& form, int id, void (F::*click)(), void (F::*change)())
        : Control(form, id), click_(gui::Bind(form, click)), change_(gui::Bind(form, change)) {}

    /// What the operator typed or chose, without a completion that is only offered. While Click runs it
    /// belongs to the entry that was chosen; Edited has what it replaced.
    std::string Text() const;
    /// Does not run Change.
    void Text(const std::string& text);
    /// The name of the account that is shown as it was edited before the selected entry was chosen.
    std::string Edited() const;

    /// The entry of the account that is shown; -1 for none. Not moved by typing or by a choice that was
    /// refused.
    int Shown() const { return shown_; }
    /// Makes the entry the one that is shown, without running Click; -1 for none.
    void Shown(int index);

    const accounts::NameList& Names() const { return names_; }
    int ListCount() const { return names_.Count(); }
    /// The selected entry; -1 for none.
    int ListIndex() const;
    /// Selects an entry (-1 for none) and runs the Click handler, as choosing it does.
    void ListIndex(int index);
    void AddItem(const std::string& name);
    /// Replaces all entries by what `fill` adds, `count` of them.
    void Fill(int count, const std::function<void()>& fill);
    void Rename(int index, const std::string& name);
    void RemoveItem(int index);

private:
    void Attached() override;
    void Command(int code) override;
    bool Key(int virtualKey) override;
    bool Message(HWND window, UINT message, WPARAM& wParam, LPARAM lParam) override;
    void ListUpTo(int count);
    gui::Task<> ListInTurns();
    bool Offers() const;
    void Complete();
    void FieldText(const std::string& text);

    std::function<void()> click_;
    std::function<void()> change_;
    accounts::NameList names_;
    /// So many of the names are in the list control.
    int listed_ = 0;
    bool listing_ = false;
    HWND field_ = nullptr;
    HWND list_ = nullptr;
    int shown_ = -1;
    std::string typed_;
    std::string offer_;
    bool completing_ = false;
};
