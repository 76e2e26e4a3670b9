#include "supervision/IPChangeMonitor.h"

#include "common/Numbers.h"
#include "servers/KernoKeys.h"
#include "servers/modServerControl.h"
#include "settings/kToolsSettings.h"
#include "supervision/IPDetection.h"
#include "supervision/RestartAll.h"

namespace supervision {

namespace {

DetectedAddresses Detect(const clsINI& kTools) {
    const double method = common::Val(kTools.INIProperty(settings::key::kIPDetectionMethod));
    if (method == 0)
        return DetectLocalAddresses();
    if (method == 1)
        return DetectHostAddresses(kTools.INIProperty(settings::key::kDynamicHostname));
    return {};
}

} // namespace

bool IsChange(const Addresses& addresses) {
    return !addresses.detected.empty() && addresses.detected != addresses.current;
}

Addresses IPChangeMonitor::Look() const {
    Addresses addresses;
    addresses.detected = Detect(kTools_).back();
    addresses.current = kernoIni_.INIProperty(suite::key::kServerAddress);
    return addresses;
}

void IPChangeMonitor::Act(const Addresses& addresses, const IPChangeSettings& settings) {
    if (!settings.enabled || !IsChange(addresses))
        return;
    if (settings.modifyIni)
        kernoIni_.INIProperty(suite::key::kServerAddress, addresses.detected);
    if (settings.restart && modServerControl::IsZoneRunning())
        RestartAll({.message = settings.message, .meanwhile = {}}, kernoIni_);
}

} // namespace supervision
