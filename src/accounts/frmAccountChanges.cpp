#include "accounts/frmAccountChanges.h"

#include <algorithm>

void frmAccountChanges::Form_Load() {
    lstChanges.Columns({{"Account", 26}, {"What", 16}, {"As it is", 29}, {"As it will be", 29}});
    List(0);
}

void frmAccountChanges::List(int select) {
    changes_ = accounts::WaitingChanges(store_);
    lstChanges.Fill(changes_.size(), [this](std::size_t row, std::size_t column) {
        const accounts::WaitingChange& change = changes_[row];
        const std::string* const texts[] = {&change.account, &change.what, &change.before, &change.after};
        return *texts[column];
    });
    lstChanges.ListIndex(std::min(select, lstChanges.ListCount() - 1));
    lblHint.Caption(changes_.empty()
                        ? "Nothing waits for Save."
                        : std::to_string(changes_.size()) + (changes_.size() == 1 ? " change" : " changes") +
                              ". Reload and Cancel would throw all of them away.");
}

void frmAccountChanges::cmdTakeBack_Click() {
    const int index = lstChanges.ListIndex();
    if (index < 0)
        return;
    const std::string refusal = accounts::TakeBack(store_, changes_[static_cast<std::size_t>(index)]);
    List(index);
    if (!refusal.empty())
        Tell(refusal);
}
