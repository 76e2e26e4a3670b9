#pragma once

#include "gui/modSystemTray.h"

namespace support {

/// True when the form's icon stands in the task bar's notification area, with whatever text.
inline bool HasTrayIcon(const gui::Form& form) {
    NOTIFYICONDATAA record = modSystemTray::TrayRecord(form, "");
    // Leaves picture and text as they are.
    record.uFlags = NIF_MESSAGE;
    return Shell_NotifyIconA(NIM_MODIFY, &record) != FALSE;
}

} // namespace support
