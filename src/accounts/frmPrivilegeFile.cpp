#include "accounts/frmPrivilegeFile.h"

#include "accounts/GMHistory.h"
#include "accounts/WaitingChanges.h"

#include <algorithm>

namespace {

using Finding = accounts::AuditRow::Finding;

const char* FindingText(Finding finding) {
    switch (finding) {
    case Finding::NoAccount:
        return "no account has this number";
    case Finding::NextFree:
        return "no account - the next one gets this number";
    case Finding::Double:
        return "double row, does not count";
    case Finding::None:
        break;
    }
    return "";
}

std::string Counted(std::size_t count, const char* one, const char* many) {
    return std::to_string(count) + " " + (count == 1 ? one : many);
}

/// The date in a generation's name: what stands behind the first blank, without the ending.
std::string DateIn(const std::string& path) {
    constexpr std::size_t kDateLength = sizeof "2026-11-21 15.30.12" - 1;
    const std::size_t ending = sizeof ".345.bak" - 1;
    return path.substr(path.size() - ending - kDateLength, kDateLength);
}

/// The first few of the accounts that would change, for a question. With names, because a number may have
/// gone to somebody else since.
std::string Listed(const std::vector<accounts::GMTable::Change>& changes, const clsAccountSQL& store) {
    constexpr std::size_t kShown = 12;
    std::string text;
    for (std::size_t i = 0; i < std::min(kShown, changes.size()); ++i) {
        const auto row = store.RowOfAccount(changes[i].id);
        text += "\n" + (row ? store.Text(*row, accounts::Field::Name) : std::string()) + " (" +
                std::to_string(changes[i].id) + "): " + accounts::PrivilegesText(changes[i].before) + " -> " +
                accounts::PrivilegesText(changes[i].after);
    }
    if (changes.size() > kShown)
        text += "\n... and " + Counted(changes.size() - kShown, "more", "more");
    return text;
}

} // namespace

void frmPrivilegeFile::Form_Load() {
    lstRows.Columns({{"ID", 11}, {"Account", 18}, {"Finding", 42}, {"Privileges", 29}});
    generations_ = accounts::Generations(store_.GMPath());
    for (const std::string& path : generations_)
        cboGenerations.AddItem(DateIn(path));
    cboGenerations.ListIndex(generations_.empty() ? -1 : 0);
    cmdBringBack.Enabled(!generations_.empty());
    List();
}

void frmPrivilegeFile::List() {
    rows_ = accounts::AuditPrivileges(store_);
    findings_ = static_cast<std::size_t>(std::ranges::count_if(
        rows_, [](const accounts::AuditRow& row) { return row.finding != Finding::None; }));
    lstRows.Fill(rows_.size(), [this](std::size_t index, std::size_t column) -> std::string {
        const accounts::AuditRow& row = rows_[index];
        switch (column) {
        case 0:
            return std::to_string(row.id);
        case 1:
            return row.account;
        case 2:
            return FindingText(row.finding);
        default:
            return accounts::PrivilegesText(row.flags);
        }
    });
    lblFindings.Caption(findings_ == 0
                            ? "Every row belongs to an account."
                            : Counted(findings_, "row belongs", "rows belong") +
                                  " to no account or stand twice. Whoever gets such a number is a game "
                                  "master from then on.");
    // Without the accounts every row would look as if it had none.
    cmdClear.Enabled(findings_ > 0 && store_.Connected());
}

gui::Task<> frmPrivilegeFile::cmdClear_Click() {
    std::string shown;
    for (std::size_t i = 0; i < std::min<std::size_t>(findings_, 12); ++i)
        shown += "\n" + std::to_string(rows_[i].id) + ": " + FindingText(rows_[i].finding);
    if (findings_ > 12)
        shown += "\n... and " + std::to_string(findings_ - 12) + " more";
    const int answer = co_await MsgBox("Remove " + Counted(findings_, "row", "rows") +
                                           "? The change waits for Save.\n" + shown,
                                       MB_YESNO | MB_ICONQUESTION);
    if (answer != IDYES)
        co_return;
    accounts::ClearFindings(store_, rows_);
    List();
}

gui::Task<> frmPrivilegeFile::cmdBringBack_Click() {
    const int index = cboGenerations.ListIndex();
    if (index < 0)
        co_return;
    const std::string path = generations_[static_cast<std::size_t>(index)];
    accounts::GMTable earlier;
    earlier.Load(path);
    const auto changes = accounts::DifferencesTo(store_, earlier);
    if (changes.empty()) {
        Tell("The accounts have the privileges of " + DateIn(path) + " already.");
        co_return;
    }
    const int answer = co_await MsgBox("Bring the privileges of " + DateIn(path) +
                                           " back? The changes wait for Save. A number may have "
                                           "gone to another account since; look at the names.\n" +
                                           Listed(changes, store_),
                                       MB_YESNO | MB_ICONQUESTION);
    if (answer != IDYES)
        co_return;
    const bool all = accounts::BringBack(store_, changes) == 1;
    List();
    if (!all)
        Tell("The table of privileges is full. Not all of them could be brought back.");
}
