#include "binding/Setting.h"

#include "common/Numbers.h"
#include "settings/IniText.h"

#include <algorithm>
#include <utility>

namespace binding {

namespace {

void ShowChoice(const Choices& choices, const std::string& text) {
    const double number = common::Val(text);
    for (std::size_t i = 0; i < choices.options.size() && choices.options[i]; ++i) {
        choices.options[i]->Value(false);
        if (number == static_cast<double>(i))
            return choices.options[i]->Value(true);
    }
    if (choices.otherwise)
        choices.options[*choices.otherwise]->Value(true);
}

std::optional<std::string> ChosenNumber(const Choices& choices) {
    const auto chosen =
        std::ranges::find_if(choices.options, [](const auto* option) { return option && option->Value(); });
    if (chosen == choices.options.end())
        return {};
    return std::to_string(chosen - choices.options.begin());
}

/// Something for each file, in the order in which the settings come to need it. A window has one or two.
template <class T> class PerFile {
public:
    T* Find(const clsINI& file) {
        const auto found = std::ranges::find(files_, &file, &std::pair<clsINI*, T>::first);
        return found == files_.end() ? nullptr : &found->second;
    }
    T& Add(clsINI& file, T value) { return files_.emplace_back(&file, std::move(value)).second; }
    const std::vector<std::pair<clsINI*, T>>& All() const { return files_; }

private:
    std::vector<std::pair<clsINI*, T>> files_;
};

} // namespace

int CheckedByNumber(std::string_view text) {
    return common::Val(text) != 0 ? 1 : 0;
}

Setting::Setting(clsINI& file, std::string_view key, gui::TextBox& box)
    : file_(&file), key_(key), control_(&box), show_([&box](const std::string& text) { box.Text(text); }),
      value_([&box] { return box.Text(); }) {}

Setting::Setting(clsINI& file, std::string_view key, gui::CheckBox& box, const NumberOf& checked)
    : file_(&file), key_(key), control_(&box),
      show_([&box, checked](const std::string& text) { box.Value(checked(text)); }),
      value_([&box] { return std::to_string(box.Value()); }) {}

Setting::Setting(clsINI& file, std::string_view key, gui::ComboBox& list, const NumberOf& index)
    : file_(&file), key_(key), control_(&list),
      show_([&list, index](const std::string& text) { list.ListIndex(index(text)); }),
      value_([&list] { return std::to_string(list.ListIndex()); }) {}

Setting::Setting(clsINI& file, std::string_view key, const Choices& choices)
    : file_(&file), key_(key), control_(choices.options[0]),
      show_([choices](const std::string& text) { ShowChoice(choices, text); }),
      value_([choices] { return ChosenNumber(choices); }) {}

void Setting::Show(const std::string& text) {
    show_(text);
    loaded_ = text;
    shown_ = Value();
}

void Setting::Saved() {
    shown_ = Value();
    if (shown_)
        loaded_ = *shown_;
}

void Load(const Runs& runs) {
    PerFile<std::string> texts;
    for (const auto* run : runs)
        for (const Setting& setting : *run)
            if (!texts.Find(setting.File()))
                texts.Add(setting.File(), setting.File().Text());
    for (auto* run : runs)
        for (Setting& setting : *run)
            setting.Show(settings::FindValue(*texts.Find(setting.File()), setting.Key()).value_or(""));
}

void Save(const Runs& runs) {
    PerFile<std::vector<settings::Entry>> changes;
    for (const auto* run : runs)
        for (const Setting& setting : *run)
            if (auto value = setting.Value()) {
                auto* entries = changes.Find(setting.File());
                (entries ? *entries : changes.Add(setting.File(), {}))
                    .push_back({setting.Key(), std::move(*value)});
            }
    for (const auto& [file, entries] : changes.All())
        file->Change(entries);
}

} // namespace binding
