#pragma once

#include "Surroundings.h"

#include "supervision/frmServerControl.h"

namespace bench {

inline constexpr const char* kLogFile = "errors.txt";

/// A control panel that keeps all three servers alive and closes their dialogs, at a check a second.
class Panel {
public:
    Panel() {
        using namespace settings::key;
        surroundings.SetAddress();
        surroundings.TurnOn({kEnableErrorDetector, kErrorCheckingInterval, kMaintainServer,
                             kMaintainLoginServer, kMaintainCharacterServer, kMaintainZoneServer,
                             kHandleDialogs, kLogErrorPopups, kCheckIPChanges});
        surroundings.Set({{kDialogsOptions, "0"}, {kLogFilename, kLogFile}});
        surroundings.LaunchSuite();
        form.Show();
    }

    Surroundings surroundings;
    frmServerControl form;
};

} // namespace bench
