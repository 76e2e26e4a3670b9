#include "supervision/frmIPDetection.h"

#include "settings/kToolsSettings.h"

using namespace settings::key;
using supervision::Choices;

std::vector<supervision::BoundSetting> frmIPDetection::Settings() {
    return {
        {kIPDetectionMethod, Choices{.options = {&optLocalhost, &optDynamicHostname}, .otherwise = {}}},
        {kDynamicHostname, &txtDynamicHost},
        {kServerDetectionMethod,
         Choices{.options = {&optServerWindowTitle, &optServerProcessName}, .otherwise = {}}},
        {kBackupOption,
         Choices{.options = {&optBackupFilesOnly, &optBackupDatabaseOnly, &optBackupDatabaseFileAndRemoteSQL},
                 .otherwise = 2}},
        {kBackupHostname, &txtBackupHostname},
        {kBackupUsername, &txtBackupUsername},
        {kBackupPassword, &txtBackupPassword},
    };
}

void frmIPDetection::Form_Load() {
    kTools_.INIPath(settings::kToolsIniPath());
    for (const auto& setting : settings_)
        setting.Load(kTools_);
}

void frmIPDetection::EnableHost(bool enabled) {
    txtDynamicHost.Enabled(enabled);
    lblDynamicHost.Enabled(enabled);
}

void frmIPDetection::cmdOK_Click() {
    // An error of the file leaves the dialog open, with everything that was typed.
    for (const auto& setting : settings_)
        setting.Save(kTools_);
    Unload();
}
