#include "config/ConnectionsPage.h"

#include "common/Numbers.h"
#include "gui/MsgBox.h"
#include "settings/kToolsSettings.h"
#include "supervision/IPDetection.h"

namespace {

supervision::DetectedAddresses DetectAddresses(const clsINI& kTools) {
    const double method = common::Val(kTools.INIProperty(settings::key::kIPDetectionMethod));
    if (method == 0)
        return supervision::DetectLocalAddresses();
    if (method == 1)
        return supervision::DetectHostAddresses(kTools.INIProperty(settings::key::kDynamicHostname));
    // A method that this version does not know finds nothing.
    return {};
}

} // namespace

void ConnectionsPage::cmdEnterIP_Click() {
    const supervision::DetectedAddresses addresses = DetectAddresses(kTools_);
    if (!Loaded())
        return;
    gui::Form& form = Panel().Parent();
    if (addresses.front().empty())
        form.MsgBox("IP Detection Failed", MB_OK, gui::kApplicationTitle);
    else if (form.MsgBox(addresses.back() + " is detected as current IP address. Use it ?", MB_YESNO,
                         gui::kApplicationTitle) == IDYES)
        txtServerIP.Text(addresses.back());
}
