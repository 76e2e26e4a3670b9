#pragma once

#include "gui/Task.h"
#include "settings/clsINI.h"

#include <optional>
#include <string>
#include <vector>

namespace supervision {

/// What the IP change monitor does about a changed address.
struct IPChangeSettings {
    bool enabled = false;
    bool modifyIni = false;             ///< writes the new address into Kerno.ini
    bool restart = false;               ///< restarts the suite, when the zone server runs
    std::optional<std::string> message; ///< told the players before that restart
};

/// The two addresses that are compared.
struct Addresses {
    std::string current;               ///< as Kerno.ini has it
    std::string detected;              ///< "" when the detection failed
    std::vector<std::string> messages; ///< for the user, about the detection
};

/// True when the detected address is there and differs from the current one.
bool IsChange(const Addresses& addresses);

/// Compares the computer's address with the one that the servers publish (the key "IP" of Kerno.ini), and
/// carries a new address over. Remembers nothing: a new address that is not written into Kerno.ini is a
/// change again at the next look.
class IPChangeMonitor {
public:
    /// `kTools` names the way of detection and the host; `kernoIni` has the address and the priorities.
    IPChangeMonitor(const clsINI& kTools, clsINI& kernoIni) : kTools_(kTools), kernoIni_(kernoIni) {}

    /// Detects the address and reads the current one.
    gui::Task<Addresses> Look() const;

    /// Does about `addresses` what the settings say, when they are a change. Raises what writing Kerno.ini
    /// raises.
    gui::Task<> Act(Addresses addresses, IPChangeSettings settings);

private:
    bool KernoIniExists() const;

    const clsINI& kTools_;
    clsINI& kernoIni_;
};

} // namespace supervision
