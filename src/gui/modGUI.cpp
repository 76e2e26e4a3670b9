#include "gui/modGUI.h"

namespace modGUI {

void DragForm(gui::Form& form) {
    ReleaseCapture();
    SendMessageA(form.Window(), WM_NCLBUTTONDOWN, HTCAPTION, 0);
}

void SetFormOnTop(gui::Form& form, bool on) {
    SetWindowPos(form.Window(), on ? HWND_TOPMOST : HWND_NOTOPMOST, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOMOVE);
}

std::int16_t HideWindowAsync(HWND window) {
    return static_cast<std::int16_t>(ShowWindowAsync(window, SW_HIDE));
}

std::int16_t ShowWindowAsyncNormal(HWND window) {
    return static_cast<std::int16_t>(ShowWindowAsync(window, SW_SHOW));
}

} // namespace modGUI
