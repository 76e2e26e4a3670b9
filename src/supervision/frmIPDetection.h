#pragma once

#include "binding/Setting.h"
#include "gui/Control.h"
#include "gui/Text.h"
#include "supervision/frmIPDetection.ids.h"

/// The supervision settings that have no place on the control panel: how addresses and servers are found, and
/// what a backup covers.
class frmIPDetection final : public gui::Form {
public:
    frmIPDetection();

    gui::Frame fraIPDetectionMethods{*this, IDC_frmIPDetection_fraIPDetectionMethods};
    gui::OptionButton optLocalhost{*this, IDC_frmIPDetection_optLocalhost,
                                   &frmIPDetection::optLocalhost_Click};
    gui::OptionButton optDynamicHostname{*this, IDC_frmIPDetection_optDynamicHostname,
                                         &frmIPDetection::optDynamicHostname_Click};
    gui::Label lblDynamicHost{*this, IDC_frmIPDetection_lblDynamicHost};
    gui::TextBox txtDynamicHost{*this, IDC_frmIPDetection_txtDynamicHost};

    gui::Frame fraServerDetection{*this, IDC_frmIPDetection_fraServerDetection};
    gui::OptionButton optServerWindowTitle{*this, IDC_frmIPDetection_optServerWindowTitle};
    gui::OptionButton optServerProcessName{*this, IDC_frmIPDetection_optServerProcessName};

    gui::Frame fraBackupDatabase{*this, IDC_frmIPDetection_fraBackupDatabase};
    gui::OptionButton optBackupFilesOnly{*this, IDC_frmIPDetection_optBackupFilesOnly};
    gui::OptionButton optBackupDatabaseOnly{*this, IDC_frmIPDetection_optBackupDatabaseOnly};
    gui::OptionButton optBackupDatabaseFileAndRemoteSQL{*this,
                                                        IDC_frmIPDetection_optBackupDatabaseFileAndRemoteSQL};
    /// Timed backups ask Kerno.ini and not this window.
    gui::Label lblTimedBackups{*this, IDC_frmIPDetection_lblTimedBackups};
    gui::Label lblRemoteSQLServer{*this, IDC_frmIPDetection_lblRemoteSQLServer};
    gui::Label lblBackupHostname{*this, IDC_frmIPDetection_lblBackupHostname};
    gui::TextBox txtBackupHostname{*this, IDC_frmIPDetection_txtBackupHostname};
    gui::Label lblUsername{*this, IDC_frmIPDetection_lblUsername};
    gui::TextBox txtBackupUsername{*this, IDC_frmIPDetection_txtBackupUsername};
    gui::Label lblPasword{*this, IDC_frmIPDetection_lblPasword};
    gui::TextBox txtBackupPassword{*this, IDC_frmIPDetection_txtBackupPassword};

    gui::CommandButton cmdOK{*this, IDC_frmIPDetection_cmdOK, &frmIPDetection::cmdOK_Click};
    gui::CommandButton cmdCancel{*this, IDC_frmIPDetection_cmdCancel, &frmIPDetection::cmdCancel_Click};

private:
    void Form_Load() override;
    gui::CommandButton* CancelButton() override { return &cmdCancel; }

    void optLocalhost_Click() { EnableHost(false); }
    void optDynamicHostname_Click() { EnableHost(true); }
    void cmdOK_Click();
    void cmdCancel_Click() { Unload(); }

    void EnableHost(bool enabled);

    clsINI kTools_;
    std::vector<binding::Setting> settings_;
};
