#include "accounts/frmAccountList.h"

#include "common/Text.h"

using accounts::Field;

void frmAccountList::Form_Load() {
    lstAccounts.Columns({{"Account name", 30}, {"ID", 16}, {"E-mail", 34}, {"Game master", 20}});
    Refresh();
}

void frmAccountList::Refresh() {
    entries_.clear();
    for (const std::size_t row : store_.Rows()) {
        // A line end between the fields, so that no search finds the end of one with the start of the next.
        std::string text = store_.Text(row, Field::Name);
        text.append("\n").append(store_.Text(row, Field::Id)).append("\n");
        text.append(store_.Text(row, Field::Email));
        entries_.push_back({row, common::UpperCase(text)});
    }
    Filter();
}

bool frmAccountList::IsGameMaster(std::size_t row) const {
    const auto id = accounts::AccountNumber(store_.Text(row, Field::Id));
    return id && store_.GMData().Contains(*id);
}

void frmAccountList::Filter() {
    const std::string part = common::UpperCase(txtSearch.Text());
    std::set<std::size_t> masters;
    if (chkGameMasters.Value()) {
        for (const auto& line : store_.GMData().Rows()) {
            const auto row = line.isAccount ? store_.RowOfAccount(line.id) : std::nullopt;
            if (row)
                masters.insert(*row);
        }
    }
    found_.clear();
    for (const Entry& entry : entries_) {
        if (entry.text.find(part) != std::string::npos &&
            (!chkGameMasters.Value() || masters.contains(entry.row)))
            found_.push_back(entry.row);
    }
    lstAccounts.Fill(found_.size(), [this](std::size_t index, std::size_t column) -> std::string {
        constexpr Field kShown[] = {Field::Name, Field::Id, Field::Email};
        const std::size_t row = found_[index];
        if (column < std::size(kShown))
            return store_.Text(row, kShown[column]);
        return IsGameMaster(row) ? "yes" : "";
    });
    lstAccounts.ListIndex(found_.empty() ? -1 : 0);
    lblCount.Caption(std::to_string(found_.size()) + " of " + std::to_string(entries_.size()) + " accounts");
}

void frmAccountList::cmdShow_Click() {
    if (const int index = lstAccounts.ListIndex(); index >= 0)
        choose_(found_[static_cast<std::size_t>(index)]);
}
