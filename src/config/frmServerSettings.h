#pragma once

#include "binding/Setting.h"
#include "config/fraDatabaseLogins.h"
#include "config/fraExperiences.h"
#include "config/fraMisc.h"
#include "config/fraNewPlayer.h"
#include "config/fraPriority.h"
#include "config/fraServerConnections.h"
#include "config/frmServerSettings.ids.h"
#include "gui/Timer.h"

#include <vector>

/// The server configurator: edits the servers' own Kerno.ini and the tool's process priorities, and shows the
/// priorities of the servers that run. Nothing is written before Save, and a file keeps every line that none
/// of the settings here owns.
class frmServerSettings final : public gui::Form {
public:
    frmServerSettings();

    gui::TabPanel mstServerConfigurator{*this, IDC_frmServerSettings_mstServerConfigurator};
    fraServerConnections connections{mstServerConfigurator, kTools_};
    fraExperiences experiences{mstServerConfigurator};
    fraDatabaseLogins database{mstServerConfigurator};
    fraPriority priority{mstServerConfigurator};
    fraNewPlayer newPlayer{mstServerConfigurator};
    fraMisc misc{mstServerConfigurator};
    gui::CommandButton cmdSaveSettings{*this, IDC_frmServerSettings_cmdSaveSettings,
                                       &frmServerSettings::cmdSaveSettings_Click};
    gui::CommandButton cmdReload{*this, IDC_frmServerSettings_cmdReload, &frmServerSettings::cmdReload_Click};
    gui::CommandButton cmdClose{*this, IDC_frmServerSettings_cmdClose, &frmServerSettings::cmdClose_Click};

    /// Fills every control from the two files, then shows the priorities of the running servers. Raises the
    /// file error with the controls as they were.
    void LoadSettings();
    /// Writes every control back: Kerno.ini first, then kTools.ini, each in one step. Raises the file error.
    void SaveSettings() { binding::Save({&settings_}); }
    /// The keys whose controls say other than the files did when they were read, in the order of the tabs'
    /// settings, with commas between them.
    std::string ChangedKeys() const;

    /// Which settings are not saved yet, and after Save which ones it changed.
    gui::Label lblChanges{*this, IDC_frmServerSettings_lblChanges};
    gui::Timer tmrChanges{*this, std::chrono::milliseconds(300), &frmServerSettings::tmrChanges_Timer};

private:
    void Form_Load() override;
    gui::CommandButton* CancelButton() override { return &cmdClose; }

    gui::Task<> cmdSaveSettings_Click();
    void tmrChanges_Timer();
    gui::Task<bool> AgreeWithFiles();
    void cmdReload_Click() { LoadSettings(); }
    void cmdClose_Click() { Unload(); }

    clsINI kerno_;
    clsINI kTools_;
    std::vector<binding::Setting> settings_;
    std::string saved_; ///< what the label says while nothing is changed
};
