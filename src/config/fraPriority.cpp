#include "config/fraPriority.h"

#include "config/SettingNumbers.h"
#include "servers/modServerControl.h"

void fraPriority::Form_Load() {
    for (gui::ComboBox* list :
         {&cboLoginPrioritySettings, &cboCharacterPrioritySettings, &cboZonePrioritySettings,
          &cboLoginPriority, &cboCharacterPriority, &cboZonePriority}) {
        for (const char* name : {"Realtime", "High", "Above Normal", "Normal", "Below Normal", "Low"})
            list->AddItem(name);
        list->ListIndex(config::kNormalPriority);
    }
}

void fraPriority::ShowCurrentPriorities() {
    for (const Current& each : current_) {
        const bool running = modServerControl::IsRunning(each.server);
        if (running)
            each.list.ListIndex(modServerControl::GetPriority(each.server));
        each.list.Enabled(running);
        each.list.Visible(running);
        each.notRunning.Visible(!running);
    }
}

void fraPriority::cboZonePriority_KeyPress(int& key) {
    // Otherwise a typed letter would choose the next entry that begins with it, perhaps "Realtime". In this
    // list an entry is only chosen by mouse or arrow key.
    key = 0;
}

void fraPriority::cmdApplyPriorityChanges_Click() {
    for (const Current& each : current_)
        if (each.list.Visible() && modServerControl::IsRunning(each.server))
            modServerControl::SetPriority(each.server, each.list.ListIndex());
}
