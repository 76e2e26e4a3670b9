#pragma once

#include "gui/modSystemTray.h"
#include "support/FakeWindow.h"

#include <string>

namespace support {

/// True when the form's icon stands in the task bar's notification area, with whatever text.
inline bool HasTrayIcon(const gui::Form& form) {
    NOTIFYICONDATAA record = modSystemTray::TrayRecord(form, "");
    // Leaves picture and text as they are.
    record.uFlags = NIF_MESSAGE;
    return Shell_NotifyIconA(NIM_MODIFY, &record) != FALSE;
}

/// A task bar in the place of the desktop's own. It keeps the text of the one icon that it takes.
class TaskBar {
public:
    TaskBar() : window_(FakeWindow("Shell_TrayWnd", "", Procedure)) {
        SetWindowLongPtrA(window_.get(), GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    }
    TaskBar(const TaskBar&) = delete;

    bool takesIcons = true;
    std::string tip;
    int added = 0;
    int changed = 0;

private:
    /// Takes what Wine's shell hands to its task bar.
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        auto* self = reinterpret_cast<TaskBar*>(GetWindowLongPtrA(window, GWLP_USERDATA));
        if (message != WM_COPYDATA || !self)
            return DefWindowProcA(window, message, wParam, lParam);
        const auto* data = reinterpret_cast<const COPYDATASTRUCT*>(lParam);
        struct Icon {
            UINT32 window, id, flags, message;
            /// Wine 8 begins the text here. Newer ones tell the picture's width, height, planes and depth
            /// first: a number that small is no two letters.
            UINT32 picture[4];
            wchar_t tip[64];
        };
        const auto* icon = static_cast<const Icon*>(data->lpData);
        if (!self->takesIcons || data->dwData > NIM_MODIFY || (data->dwData == NIM_ADD && self->added > 0))
            return FALSE;
        ++(data->dwData == NIM_ADD ? self->added : self->changed);
        if (icon->flags & NIF_TIP) {
            const auto* tip = reinterpret_cast<const wchar_t*>(icon->picture);
            self->tip = common::ToNarrow(icon->picture[0] > 0xFFFF ? tip : icon->tip);
        }
        return TRUE;
    }

    WindowHandle window_;
};

} // namespace support
