#pragma once

#include "gui/Form.h"

namespace gui {

/// An entry of the form's menu bar or of one of its pop-up menus.
class MenuItem {
public:
    template <class F, class R = void, class C = F>
    MenuItem(F& form, int id, R (C::*click)() = nullptr) : MenuItem(form, id, Bind(form, click)) {}
    ~MenuItem();
    MenuItem(const MenuItem&) = delete;
    MenuItem& operator=(const MenuItem&) = delete;

    int Id() const { return id_; }
    std::string Caption() const;
    void Caption(const std::string& caption);
    bool Checked() const;
    void Checked(bool checked);
    bool Enabled() const;
    void Enabled(bool enabled);
    /// Runs the Click handler, as choosing the entry does.
    void Choose();

private:
    MenuItem(Form& form, int id, std::function<void()> click);
    HMENU Menu() const;
    UINT State() const;

    Form& form_;
    int id_;
    std::function<void()> click_;
};

/// A menu that opens under the mouse, or where it is told. Its entries are MenuItems of the same form.
class PopupMenu {
public:
    PopupMenu(Form& form, int menuId);
    ~PopupMenu();
    PopupMenu(const PopupMenu&) = delete;
    PopupMenu& operator=(const PopupMenu&) = delete;

    /// Opens at the mouse pointer and returns when it has closed; the chosen entry's Click runs after that.
    void Show();
    /// The same with its corner at a point of the screen: where the keyboard asked for it.
    void Show(POINT at);
    HMENU Handle() const { return popup_; }

private:
    friend class Form;
    void Attach();
    void Detach();

    Form& form_;
    int menuId_;
    HMENU menu_ = nullptr;
    HMENU popup_ = nullptr;
};

} // namespace gui
