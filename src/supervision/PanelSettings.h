#pragma once

#include "supervision/BoundSetting.h"
#include "supervision/fraBackup.h"
#include "supervision/fraConnections.h"
#include "supervision/fraErrorDetector.h"

#include <array>
#include <vector>

namespace supervision {

/// The settings that the control panel's pages show, with their keys.
class PanelSettings {
public:
    PanelSettings(fraBackup& backup, fraErrorDetector& errorDetector, fraConnections& connections);

    /// Shows every setting in turn; each check box takes its consequences with it.
    void Load(const clsINI& ini) const;

    /// Writes every setting in turn. Raises the file error; the settings before it are written then.
    void Save(clsINI& ini) const;

private:
    /// A run of keys that stays together; the runs are written in another order than they are read in.
    enum Run { kBackup, kMaintainer, kDetector, kIPChange, kRuns };

    std::array<std::vector<BoundSetting>, kRuns> settings_;
};

} // namespace supervision
