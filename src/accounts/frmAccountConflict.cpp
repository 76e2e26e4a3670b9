#include "accounts/frmAccountConflict.h"

#include "common/Text.h"

namespace {

std::string Shown(accounts::Field field, const std::optional<std::string>& text) {
    if (!text || text->empty())
        return "(empty)";
    // An ampersand would mark a letter of the option.
    return common::ReplaceAll(accounts::FieldText(field, *text), "&", "&&");
}

} // namespace

void frmAccountConflict::Form_Load() {
    lblAccount.Caption("Somebody else has changed account '" +
                       conflict_.read[accounts::Index(accounts::Field::Name)].value_or("") +
                       "' since it was read. Please choose what the account is to have. "
                       "What only one of you has changed stays changed.");
    for (const accounts::Field field : accounts::kFields) {
        const std::size_t i = accounts::Index(field);
        const auto& [read, theirs, mine] =
            std::tie(conflict_.read[i], conflict_.theirs[i], conflict_.mine[i]);
        const Row& row = rows_[i];
        row.read->Caption(read && !read->empty() ? accounts::FieldText(field, *read) : "(empty)");
        row.theirs->Caption(Shown(field, theirs));
        row.mine->Caption(Shown(field, mine));
        // Nothing is to be chosen where only one side has changed the field, or both alike.
        const bool differ = theirs != mine && theirs != read && mine != read;
        row.theirs->Enabled(differ);
        row.mine->Enabled(differ);
        (mine != read && (theirs == read || theirs == mine) ? row.mine : row.theirs)->Value(true);
    }
}

void frmAccountConflict::cmdSave_Click() {
    decision_.emplace();
    for (std::size_t i = 0; i < rows_.size(); ++i)
        (*decision_)[i] = rows_[i].mine->Value();
    Unload();
}
