#include "config/fraServerConnections.h"

#include "gui/MsgBox.h"
#include "supervision/IPDetection.h"

void fraServerConnections::cmdEnterIP_Click() {
    const auto [addresses, messages] = supervision::DetectAddresses(kTools_);
    for (const std::string& message : messages)
        gui::MsgBoxNow(message);
    if (!Loaded())
        return;
    gui::Form& form = Panel().Parent();
    if (addresses.front().empty())
        form.MsgBoxNow("IP Detection Failed", MB_OK, gui::kApplicationTitle);
    else if (form.MsgBoxNow(addresses.back() + " is detected as current IP address. Use it ?", MB_YESNO,
                            gui::kApplicationTitle) == IDYES)
        txtServerIP.Text(addresses.back());
}
