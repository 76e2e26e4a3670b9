#include "supervision/IPChangeMonitor.h"

#include "servers/KernoKeys.h"
#include "servers/modServerControl.h"
#include "supervision/IPDetection.h"
#include "supervision/RestartAll.h"

namespace supervision {

bool IsChange(const Addresses& addresses) {
    return !addresses.detected.empty() && addresses.detected != addresses.current;
}

Addresses IPChangeMonitor::Look() const {
    const Detection detection = DetectAddresses(kTools_);
    return {.current = kernoIni_.INIProperty(suite::key::kServerAddress),
            .detected = detection.addresses.back(),
            .messages = detection.messages};
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
