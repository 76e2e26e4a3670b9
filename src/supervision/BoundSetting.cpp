#include "supervision/BoundSetting.h"

#include "common/Numbers.h"

#include <algorithm>

namespace supervision {

namespace {

struct Load {
    const std::string& value;

    void operator()(gui::TextBox* box) const { box->Text(value); }
    void operator()(gui::CheckBox* box) const { box->Value(common::Val(value) != 0); }
    void operator()(const Choices& choices) const {
        const double number = common::Val(value);
        for (std::size_t i = 0; i < choices.options.size() && choices.options[i]; ++i) {
            choices.options[i]->Value(false);
            if (number == static_cast<double>(i))
                return choices.options[i]->Value(true);
        }
        if (choices.otherwise)
            choices.options[*choices.otherwise]->Value(true);
    }
};

struct Read {
    std::optional<std::string> operator()(gui::TextBox* box) const { return box->Text(); }
    std::optional<std::string> operator()(gui::CheckBox* box) const { return std::to_string(box->Value()); }
    std::optional<std::string> operator()(const Choices& choices) const {
        const auto chosen = std::ranges::find_if(
            choices.options, [](const auto* option) { return option && option->Value(); });
        if (chosen == choices.options.end())
            return {};
        return std::to_string(chosen - choices.options.begin());
    }
};

} // namespace

void BoundSetting::Load(const clsINI& ini) const {
    std::visit(supervision::Load{ini.INIProperty(key_)}, shown_);
}

void BoundSetting::Save(clsINI& ini) const {
    if (const auto value = std::visit(Read{}, shown_))
        ini.INIProperty(key_, *value);
}

} // namespace supervision
