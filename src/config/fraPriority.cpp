#include "config/fraPriority.h"

#include "config/SettingNumbers.h"
#include "gui/Accessible.h"
#include "servers/modServerControl.h"

#include <string>
#include <tuple>

void fraPriority::Form_Load() {
    for (gui::ComboBox* list :
         {&cboLoginPrioritySettings, &cboCharacterPrioritySettings, &cboZonePrioritySettings,
          &cboLoginPriority, &cboCharacterPriority, &cboZonePriority}) {
        for (const char* name : {"Realtime", "High", "Above Normal", "Normal", "Below Normal", "Low"})
            list->AddItem(name);
        list->ListIndex(config::kNormalPriority);
    }
    // The labels of rows and columns name these only together.
    const std::tuple<const char*, gui::ComboBox&, gui::ComboBox&> rows[] = {
        {"Login Server", cboLoginPrioritySettings, cboLoginPriority},
        {"Character Server", cboCharacterPrioritySettings, cboCharacterPriority},
        {"Zone Server", cboZonePrioritySettings, cboZonePriority}};
    for (const auto& [row, stored, present] : rows) {
        gui::SetAccessibleName(stored.Window(), std::string(row) + ", Priority Settings");
        gui::SetAccessibleName(present.Window(), std::string(row) + ", Current Priority");
    }
}

std::optional<int> fraPriority::PriorityOf(const Current& current) {
    if (!modServerControl::IsRunning(current.server))
        return {};
    return modServerControl::GetPriority(current.server);
}

void fraPriority::Show(Current& current, std::optional<int> priority) {
    current.seen = priority;
    if (priority)
        current.list.ListIndex(*priority);
    current.list.Enabled(priority.has_value());
    current.list.Visible(priority.has_value());
    current.notRunning.Visible(!priority);
}

void fraPriority::ShowCurrentPriorities() {
    for (Current& each : current_)
        Show(each, PriorityOf(each));
}

void fraPriority::tmrFollow_Timer() {
    if (!Visible())
        return;
    // What the operator has chosen and not applied yet stays until the server itself changes.
    for (Current& each : current_)
        if (const auto priority = PriorityOf(each); priority != each.seen && !each.list.Open())
            Show(each, priority);
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
    // The system may have refused one.
    ShowCurrentPriorities();
}
