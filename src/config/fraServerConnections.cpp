#include "config/fraServerConnections.h"

#include "gui/MsgBox.h"
#include "supervision/IPDetection.h"

gui::Task<> fraServerConnections::cmdEnterIP_Click() {
    const supervision::Detection detection = co_await supervision::DetectAddresses(kTools_);
    for (const std::string& message : detection.messages)
        co_await MsgBox(message, MB_OK, gui::kApplicationTitle);
    const std::string address = detection.addresses.back();
    if (address.empty()) {
        co_await MsgBox("IP Detection Failed", MB_OK, gui::kApplicationTitle);
        co_return;
    }
    const std::string question = address + " is detected as current IP address. Use it ?";
    const int answer = co_await MsgBox(question, MB_YESNO, gui::kApplicationTitle);
    if (answer == IDYES)
        txtServerIP.Text(address);
}
