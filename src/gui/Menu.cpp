#include "gui/Menu.h"

namespace gui {

namespace {

HMENU MenuHolding(HMENU menu, UINT id) {
    return menu && GetMenuState(menu, id, MF_BYCOMMAND) != static_cast<UINT>(-1) ? menu : nullptr;
}

} // namespace

MenuItem::MenuItem(Form& form, int id, std::function<void()> click)
    : form_(form), id_(id), click_(std::move(click)) {
    form.menuItems_.push_back(this);
}

MenuItem::~MenuItem() {
    std::erase(form_.menuItems_, this);
}

UINT MenuItem::State() const {
    const HMENU menu = Menu();
    return menu ? GetMenuState(menu, static_cast<UINT>(id_), MF_BYCOMMAND) : 0;
}

HMENU MenuItem::Menu() const {
    const auto id = static_cast<UINT>(id_);
    if (HMENU bar = MenuHolding(GetMenu(form_.Window()), id))
        return bar;
    for (const PopupMenu* popup : form_.popupMenus_)
        if (HMENU menu = MenuHolding(popup->Handle(), id))
            return menu;
    return nullptr;
}

std::string MenuItem::Caption() const {
    const auto id = static_cast<UINT>(id_);
    const int length = GetMenuStringA(Menu(), id, nullptr, 0, MF_BYCOMMAND);
    std::string text(static_cast<std::size_t>(length) + 1, '\0');
    GetMenuStringA(Menu(), id, text.data(), length + 1, MF_BYCOMMAND);
    text.resize(static_cast<std::size_t>(length));
    return text;
}

void MenuItem::Caption(const std::string& caption) {
    MENUITEMINFOA info{};
    info.cbSize = sizeof info;
    info.fMask = MIIM_STRING;
    std::string text = caption;
    info.dwTypeData = text.data();
    SetMenuItemInfoA(Menu(), static_cast<UINT>(id_), FALSE, &info);
}

bool MenuItem::Checked() const {
    return State() & MF_CHECKED;
}

void MenuItem::Checked(bool checked) {
    const UINT state = MF_BYCOMMAND | (checked ? static_cast<UINT>(MF_CHECKED) : 0u);
    CheckMenuItem(Menu(), static_cast<UINT>(id_), state);
}

bool MenuItem::Enabled() const {
    return !(State() & MF_GRAYED);
}

void MenuItem::Enabled(bool enabled) {
    const UINT state = MF_BYCOMMAND | (enabled ? 0u : static_cast<UINT>(MF_GRAYED));
    EnableMenuItem(Menu(), static_cast<UINT>(id_), state);
}

void MenuItem::Choose() {
    if (click_)
        form_.Raise(click_);
}

PopupMenu::PopupMenu(Form& form, int menuId) : form_(form), menuId_(menuId) {
    form.popupMenus_.push_back(this);
}

PopupMenu::~PopupMenu() {
    std::erase(form_.popupMenus_, this);
    Detach();
}

void PopupMenu::Attach() {
    menu_ = LoadMenuA(GetModuleHandleA(nullptr), MAKEINTRESOURCEA(menuId_));
    popup_ = GetSubMenu(menu_, 0);
    if (!popup_)
        throw RuntimeError(common::kObjectNotSet,
                           "The pop-up menu " + std::to_string(menuId_) + " could not be loaded");
}

void PopupMenu::Detach() {
    if (menu_)
        DestroyMenu(menu_);
    menu_ = popup_ = nullptr;
}

void PopupMenu::Show() {
    POINT at;
    GetCursorPos(&at);
    Show(at);
}

void PopupMenu::Show(POINT at) {
    // A menu of a window that is not in front would stay open when the user clicks elsewhere; the empty
    // message after it makes the system notice the click.
    SetForegroundWindow(form_.Window());
    TrackPopupMenu(popup_, TPM_RIGHTBUTTON, at.x, at.y, 0, form_.Window(), nullptr);
    PostMessageA(form_.Window(), WM_NULL, 0, 0);
}

} // namespace gui
