#pragma once

#include "accounts/clsAccountSQL.h"

#include <string>
#include <vector>

namespace accounts {

/// A row of the privilege file, looked at beside the accounts.
struct AuditRow {
    enum class Finding {
        None,
        /// No account has the number. Whoever gets it is a game master from then on.
        NoAccount,
        /// The same, and the number is the next that an account gets.
        NextFree,
        /// A row of the number stands further up; only that one counts.
        Double
    };

    std::int32_t id;
    /// The account's name, "" for none.
    std::string account;
    Finding finding;
    Privileges flags;
};

/// All rows, those with a finding first, otherwise as they stand in the file.
std::vector<AuditRow> AuditPrivileges(clsAccountSQL& store);

/// Removes the rows with a finding. As all changes this one waits for Save.
void ClearFindings(clsAccountSQL& store, const std::vector<AuditRow>& rows);

/// The accounts whose privileges were others in an earlier generation, and what they were. Numbers without an
/// account are left out: nobody may get their privileges.
std::vector<GMTable::Change> DifferencesTo(const clsAccountSQL& store, const GMTable& earlier);

/// Gives the accounts the privileges they had. Waits for Save; as many as there is room for in the table are
/// brought back, and 0 is returned when not all are.
std::int16_t BringBack(clsAccountSQL& store, const std::vector<GMTable::Change>& changes);

} // namespace accounts
