#pragma once

#include "accounts/clsAccountSQL.h"

#include <string>
#include <vector>

namespace accounts {

/// A row that somebody else changed on the server since it was read, in a field that was changed here too.
struct Conflict {
    std::size_t row = 0;
    FieldTexts read;
    FieldTexts theirs;
    FieldTexts mine;
};

/// What became of a Save.
struct SendResult {
    /// It ended before everything was tried; what was not sent waits here.
    bool stopped = false;
    /// Because the server is gone or does not answer.
    bool serverGone = false;
    /// Why the last operation failed, for stopped and privilegesFailed.
    std::optional<RuntimeError> error;
    /// The accounts and privileges that were not saved, one line each; all others are.
    std::vector<std::string> refused;
    std::vector<Conflict> conflicts;
    bool privilegesFailed = false;
    /// Further things that happened, for the operator to know.
    std::vector<std::string> notes;

    bool Saved() const { return !stopped && !privilegesFailed && refused.empty() && conflicts.empty(); }
};

/// Sends all changes: the accounts to the server, then the privileges to their file. Privileges of an account
/// that was not sent wait with it, and so do those of a number that is not the account's any more: nobody
/// else gets them.
gui::Task<SendResult> Send(clsAccountSQL& store);

/// Decides a conflict: for each field, by Field, whether it is to be as it is here. Such fields are sent with
/// the next Save, the others are as they are on the server.
void Decide(clsAccountSQL& store, const Conflict& conflict, const std::array<bool, kFields.size()>& mine);

/// Says what a Save came to, in one text.
std::string TextOf(const SendResult& result, const clsAccountSQL& store);

} // namespace accounts
