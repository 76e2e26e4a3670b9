#include "gui/FormSlot.h"

namespace gui {

namespace {

std::vector<std::unique_ptr<Form>>& RetiredForms() {
    static std::vector<std::unique_ptr<Form>> forms;
    return forms;
}

} // namespace

void Retire(std::unique_ptr<Form> form) {
    RetiredForms().push_back(std::move(form));
}

void ReleaseRetired() {
    auto& forms = RetiredForms();
    if (!forms.empty())
        std::erase_if(forms, [](const auto& form) { return !form || !form->Busy(); });
}

} // namespace gui
