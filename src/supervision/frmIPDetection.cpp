#include "supervision/frmIPDetection.h"

#include "servers/Servers.h"
#include "settings/kToolsSettings.h"
#include "supervision/NextBackup.h"

using binding::Choices;
using namespace settings::key;

frmIPDetection::frmIPDetection()
    : Form(IDD_frmIPDetection),
      settings_{
          {kTools_, kIPDetectionMethod,
           Choices{.options = {&optLocalhost, &optDynamicHostname}, .otherwise = {}}},
          {kTools_, kDynamicHostname, txtDynamicHost},
          {kTools_, kServerDetectionMethod,
           Choices{.options = {&optServerWindowTitle, &optServerProcessName}, .otherwise = {}}},
          {kTools_, kBackupOption,
           Choices{
               .options = {&optBackupFilesOnly, &optBackupDatabaseOnly, &optBackupDatabaseFileAndRemoteSQL},
               .otherwise = 2}},
          {kTools_, kBackupHostname, txtBackupHostname},
          {kTools_, kBackupUsername, txtBackupUsername},
          {kTools_, kBackupPassword, txtBackupPassword},
      } {}

void frmIPDetection::Form_Load() {
    kTools_.INIPath(settings::kToolsIniPath());
    binding::Load({&settings_});
    const clsINI kerno(settings::KernoIniPath(modServerControl::KernoPath()));
    lblTimedBackups.Caption("Timed backups ask Kerno.ini instead. " + supervision::BackupOptionText(kerno));
}

void frmIPDetection::EnableHost(bool enabled) {
    txtDynamicHost.Enabled(enabled);
    lblDynamicHost.Enabled(enabled);
}

void frmIPDetection::cmdOK_Click() {
    // An error of the file leaves the dialog open, with everything that was typed.
    binding::Save({&settings_});
    Unload();
}
