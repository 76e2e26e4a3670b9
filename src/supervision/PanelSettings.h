#pragma once

#include "binding/Setting.h"
#include "supervision/fraBackup.h"
#include "supervision/fraConnections.h"
#include "supervision/fraErrorDetector.h"

namespace supervision {

/// The settings that the control panel's pages show, with their keys.
class PanelSettings {
public:
    PanelSettings(clsINI& kTools, fraBackup& backup, fraErrorDetector& errorDetector,
                  fraConnections& connections);

    /// Shows every setting in turn; each check box takes its consequences with it. Raises the file error.
    void Load() { binding::Load({&backup_, &maintainer_, &detector_, &ipChange_}); }

    /// Writes every setting, in another order. Raises the file error; the file is as it was then.
    void Save() { binding::Save({&backup_, &detector_, &maintainer_, &ipChange_}); }

private:
    std::vector<binding::Setting> backup_, maintainer_, detector_, ipChange_;
};

} // namespace supervision
