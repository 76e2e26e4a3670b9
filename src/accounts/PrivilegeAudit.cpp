#include "accounts/PrivilegeAudit.h"

#include <algorithm>
#include <map>
#include <unordered_set>

namespace accounts {

namespace {

using Finding = AuditRow::Finding;

void RemoveRows(clsAccountSQL& store, std::int32_t id) {
    while (store.RemoveGMData(id)) {
    }
}

std::map<std::int32_t, Privileges> FirstRows(const GMTable& table) {
    std::map<std::int32_t, Privileges> rows;
    for (const GMTable::Row& row : table.Rows()) {
        if (row.isAccount)
            rows.try_emplace(row.id, row.flags);
    }
    return rows;
}

} // namespace

std::vector<AuditRow> AuditPrivileges(clsAccountSQL& store) {
    const std::int32_t nextFree = store.GetUniqueAccountID();
    std::unordered_set<std::int32_t> seen;
    std::vector<AuditRow> rows;
    for (const GMTable::Row& row : store.GMData().Rows()) {
        if (!row.isAccount)
            continue;
        AuditRow found{row.id, {}, Finding::None, row.flags};
        if (const auto account = store.RowOfAccount(row.id))
            found.account = store.Text(*account, Field::Name);
        else
            found.finding = row.id == nextFree ? Finding::NextFree : Finding::NoAccount;
        if (!seen.insert(row.id).second)
            found.finding = Finding::Double;
        rows.push_back(std::move(found));
    }
    std::ranges::stable_partition(rows, [](const AuditRow& row) { return row.finding != Finding::None; });
    return rows;
}

void ClearFindings(clsAccountSQL& store, const std::vector<AuditRow>& rows) {
    for (const AuditRow& row : rows) {
        if (row.finding == Finding::Double)
            store.RemoveGMDoubles(row.id);
        else if (row.finding != Finding::None)
            RemoveRows(store, row.id);
    }
}

std::vector<GMTable::Change> DifferencesTo(const clsAccountSQL& store, const GMTable& earlier) {
    const auto before = FirstRows(store.GMData());
    const auto after = FirstRows(earlier);
    std::vector<GMTable::Change> changes;
    for (const auto& [id, flags] : before) {
        if (!after.contains(id))
            changes.push_back({id, flags, std::nullopt});
    }
    for (const auto& [id, flags] : after) {
        const auto now = before.find(id);
        const auto was = now == before.end() ? std::nullopt : std::optional(now->second);
        if (was != flags)
            changes.push_back({id, was, flags});
    }
    std::erase_if(changes,
                  [&store](const GMTable::Change& change) { return !store.RowOfAccount(change.id); });
    return changes;
}

std::int16_t BringBack(clsAccountSQL& store, const std::vector<GMTable::Change>& changes) {
    std::int16_t all = 1;
    for (const GMTable::Change& change : changes) {
        RemoveRows(store, change.id);
        if (change.after && !store.ModifyGMData(change.id, *change.after))
            all = 0;
    }
    return all;
}

} // namespace accounts
