#pragma once

#include "common/clsLog.h"
#include "settings/clsINI.h"

/// What the pages of the control panel share.
struct PanelState {
    clsINI kTools; ///< the tool's settings
    clsINI kerno;  ///< Kerno.ini; the panel reads the servers' priorities here too
    clsLog log;    ///< the error log

    /// Set when a backup shuts the servers down. It never goes back and nothing asks it: the detector and the
    /// maintainer work on during a backup.
    bool BackupInProgress = false;
};
