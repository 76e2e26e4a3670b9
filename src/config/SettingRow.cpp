#include "config/SettingRow.h"

#include "common/Numbers.h"
#include "common/RuntimeError.h"
#include "servers/Priority.h"

namespace config {

namespace {

void Show(gui::TextBox& box, const std::string& text) {
    box.Text(text);
}
void Show(gui::CheckBox& box, const std::string& text) {
    box.Value(CheckValueOf(text));
}
void Show(gui::ComboBox& list, const std::string& text) {
    list.ListIndex(PriorityOf(text));
}

std::string TextOf(const gui::TextBox& box) {
    return box.Text();
}
std::string TextOf(const gui::CheckBox& box) {
    return std::to_string(box.Value());
}
std::string TextOf(const gui::ComboBox& list) {
    return std::to_string(list.ListIndex());
}

} // namespace

int CheckValueOf(std::string_view text) {
    try {
        return common::CInt(text) != 0 ? 1 : 0;
    } catch (const RuntimeError& error) {
        return error.Number() == common::kOverflow ? 1 : 0;
    }
}

int PriorityOf(std::string_view text) {
    try {
        const int index = common::CInt(common::Val(text));
        return modServerControl::PriorityClassOf(index) ? index : kNormalPriority;
    } catch (const RuntimeError&) {
        return kNormalPriority;
    }
}

void ShowSetting(const SettingControl& control, const std::string& text) {
    std::visit([&](auto* each) { Show(*each, text); }, control);
}

std::string SettingText(const SettingControl& control) {
    return std::visit([](const auto* each) { return TextOf(*each); }, control);
}

} // namespace config
