#include "gui/modSystemTray.h"

#include <algorithm>

namespace modSystemTray {

namespace {

constexpr UINT kIconId = 1;

} // namespace

NOTIFYICONDATAA TrayRecord(const gui::Form& form, const std::string& tip) {
    NOTIFYICONDATAA record{};
    // The first version's record, which every shell takes: 88 bytes in a 32-bit program.
    record.cbSize = NOTIFYICONDATAA_V1_SIZE;
    record.hWnd = form.Window();
    record.uID = kIconId;
    record.uFlags = NIF_MESSAGE | NIF_ICON | NIF_TIP;
    record.uCallbackMessage = WM_LBUTTONDOWN;
    record.hIcon = form.Icon();
    std::string text = tip + '\0';
    text.resize(kTipSize, ' ');
    std::ranges::copy(text, record.szTip);
    return record;
}

bool TrayAddIcon(const gui::Form& form, const std::string& tip) {
    // Or a task bar that is made anew could not tell a tool that runs as administrator.
    ChangeWindowMessageFilterEx(form.Window(), RegisterWindowMessageA("TaskbarCreated"), MSGFLT_ALLOW,
                                nullptr);
    NOTIFYICONDATAA record = TrayRecord(form, tip);
    return Shell_NotifyIconA(NIM_ADD, &record) || Shell_NotifyIconA(NIM_MODIFY, &record);
}

void TrayModifyIcon(const gui::Form& form, const std::string& tip) {
    NOTIFYICONDATAA record = TrayRecord(form, tip);
    Shell_NotifyIconA(NIM_MODIFY, &record);
}

void TrayDeleteIcon(const gui::Form& form) {
    NOTIFYICONDATAA record = TrayRecord(form, {});
    Shell_NotifyIconA(NIM_DELETE, &record);
}

int EventOf(const gui::Form& form, int x, int y) {
    // A real press lies where the mouse is. The mouse of a tray event is over the icon.
    POINT pressed{x, y};
    ClientToScreen(form.Window(), &pressed);
    const DWORD mouse = GetMessagePos();
    const bool real = form.Visible() && pressed.x == static_cast<short>(LOWORD(mouse)) &&
                      pressed.y == static_cast<short>(HIWORD(mouse));
    return y == 0 && !real ? x : 0;
}

void TrayShowMenu(const gui::Form& form, gui::PopupMenu& menu) {
    // The menu's entries would work behind the box's back, and ask their questions over its.
    if (IsWindowEnabled(form.Window()))
        menu.Show();
    else
        SetForegroundWindow(GetLastActivePopup(form.Window()));
}

} // namespace modSystemTray
