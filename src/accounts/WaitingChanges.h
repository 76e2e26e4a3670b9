#pragma once

#include "accounts/clsAccountSQL.h"

#include <string>
#include <vector>

namespace accounts {

/// Something that the next Save will send: an account that was added or deleted, one field of a changed one,
/// or the privileges of a number.
struct WaitingChange {
    enum class Kind { Added, Deleted, FieldChanged, PrivilegesChanged };

    Kind kind;
    /// Of an account's change.
    std::size_t row = 0;
    Field field = Field::Id;
    /// Of a change of privileges.
    std::int32_t id = 0;

    // For the operator.
    std::string account;
    std::string what;
    std::string before;
    std::string after;
};

/// What privileges say to an operator: "no game master", "all", or the names of those that are granted.
std::string PrivilegesText(const std::optional<Privileges>& privileges);

/// The changes that wait for Save, in the order in which the accounts were first touched, privileges last.
std::vector<WaitingChange> WaitingChanges(const clsAccountSQL& store);

/// How many accounts they concern; `edited` is a row that is counted in any case.
std::size_t WaitingAccounts(const clsAccountSQL& store, std::optional<std::size_t> edited = std::nullopt);

/// Takes a change back; privileges that hang on an account's number go back with it. Returns why it cannot,
/// "" when it is done.
std::string TakeBack(clsAccountSQL& store, const WaitingChange& change);

} // namespace accounts
