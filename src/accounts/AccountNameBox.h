#pragma once

#include "accounts/NameList.h"
#include "gui/Lists.h"

/// The list of account names, whose field is also where a name is edited. Typing completes a name of the
/// list; Enter chooses it, and so does choosing that very entry of the list while the field offers it. Any
/// other text that was typed is an account's new name, whatever is chosen next, and the completion disappears
/// when the field is left.
class AccountNameBox final : public gui::ComboBox {
public:
    template <class F>
    AccountNameBox(F& form, int id, void (F::*click)(), void (F::*change)())
        : ComboBox(form, id, click), change_(gui::Bind(form, change)) {}

    /// What the operator typed or chose, without a completion that is only offered. While Click runs it
    /// belongs to the entry that was chosen; Edited has what it replaced.
    std::string Text() const;
    /// Does not run Change.
    void Text(const std::string& text);
    /// The text before an entry was chosen.
    const std::string& Edited() const { return typed_; }

    /// The entry of the account that is shown; -1 for none. Not moved by typing or by a choice that was
    /// refused.
    int Shown() const { return shown_; }
    /// Makes the entry the one that is shown, without running Click; -1 for none.
    void Shown(int index);

    const accounts::NameList& Names() const { return names_; }
    void AddItem(const std::string& name);
    /// As for every list.
    void Fill(int count, const std::function<void()>& fill);
    void Rename(int index, const std::string& name);
    void RemoveItem(int index);
    void Clear();

private:
    void Attached() override;
    void Command(int code) override;
    bool Key(int virtualKey) override;
    bool Offers() const;
    void TakeAsSearch() { typed_ = shown_ < 0 ? std::string() : names_.At(shown_); }
    void Complete();
    void FieldText(const std::string& text);

    std::function<void()> change_;
    accounts::NameList names_;
    HWND field_ = nullptr;
    HWND list_ = nullptr;
    int shown_ = -1;
    std::string typed_;
    std::string offer_;
    bool completing_ = false;
};
