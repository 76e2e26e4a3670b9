#include "supervision/IPChangeMonitor.h"

#include "servers/KernoKeys.h"
#include "servers/modServerControl.h"
#include "supervision/IPDetection.h"
#include "supervision/RestartAll.h"

namespace supervision {

bool IsChange(const Addresses& addresses) {
    return !addresses.detected.empty() && addresses.detected != addresses.current;
}

gui::Task<Addresses> IPChangeMonitor::Look() const {
    const Detection detection = co_await DetectAddresses(kTools_);
    Addresses addresses;
    addresses.current = kernoIni_.INIProperty(suite::key::kServerAddress);
    addresses.detected = detection.addresses.back();
    addresses.messages = detection.messages;
    co_return addresses;
}

gui::Task<> IPChangeMonitor::Act(Addresses addresses, IPChangeSettings settings) {
    // A folder that is being replaced has no Kerno.ini for a moment, and no address to compare with.
    if (!settings.enabled || !IsChange(addresses) || !KernoIniExists())
        co_return;
    journal::Write(journal::Asker::Address, "new address " + addresses.detected);
    if (settings.modifyIni)
        kernoIni_.INIProperty(suite::key::kServerAddress, addresses.detected);
    if (!settings.restart || !modServerControl::IsZoneRunning())
        co_return;
    const Restart restart{.asker = journal::Asker::Address, .message = settings.message, .meanwhile = {}};
    co_await RestartAll(restart, kernoIni_);
}

bool IPChangeMonitor::KernoIniExists() const {
    return GetFileAttributesA(kernoIni_.INIPath().c_str()) != INVALID_FILE_ATTRIBUTES;
}

} // namespace supervision
