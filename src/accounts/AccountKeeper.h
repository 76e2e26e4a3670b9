#pragma once

#include "accounts/AccountFields.h"
#include "accounts/clsAccountSQL.h"

#include <optional>
#include <string>

namespace accounts {

/// What stands in the editor: fields and boxes of one account.
struct AccountEdit {
    AccountFields fields;
    /// None for a value that the list of sexes does not have.
    std::optional<std::int16_t> sex;
    bool isGameMaster = false;
    Privileges privileges{};

    bool operator==(const AccountEdit&) const = default;
};

/// `text`, and the error below it where there is one.
std::string WithReason(const std::string& text, const std::optional<RuntimeError>& error);

/// The same for a task on the server that failed, with what to do before the operator presses for `action`
/// again; `serverGone`: the server is gone or does not answer.
std::string FailureText(const std::string& text, const std::string& action, bool serverGone,
                        const std::optional<RuntimeError>& error);

/// Takes over into the store what the operator does with accounts and their privileges, so that both stay
/// together. One account is the selected one, to which Keep writes.
class AccountKeeper {
public:
    explicit AccountKeeper(clsAccountSQL& store) : store_(store) {}

    struct Selected {
        std::size_t row = 0;
        std::int32_t id = 0;
        /// The account as the store has it, or as the editor can show that.
        AccountEdit stored;
    };
    /// What an action came to; `message` is for the operator, "" for none.
    struct Outcome {
        bool done = false;
        std::string message;
    };

    /// The account that was selected last.
    const std::optional<Selected>& Current() const { return selected_; }
    /// Selects the account of a row of the store. False, and the last one stays, when it cannot be shown.
    bool Select(std::size_t row);
    void SelectNone() { selected_.reset(); }

    /// True when `edit` has something of the selected account that was not kept yet.
    bool Differs(const AccountEdit& edit) const { return selected_ && edit != selected_->stored; }
    /// Why the selected account cannot be kept as `edit`; "" when it can.
    std::string RefusalToKeep(const AccountEdit& edit) const;
    /// Takes `edit` over into the selected account. Its privileges go where its number goes, and whoever gets
    /// its old number later finds none there.
    Outcome Keep(const AccountEdit& edit);
    /// Adds an account, which is the selected one from then on. Privileges that an account that is gone left
    /// behind under the number are removed.
    Outcome Add(const AccountEdit& edit);
    /// Deletes an account with its privileges; when it was the selected one, no account is selected.
    Outcome Delete(std::size_t row);

private:
    void RemovePrivileges(std::int32_t id);
    Outcome Failure(const std::string& text) const { return {false, WithReason(text, store_.LastError())}; }

    clsAccountSQL& store_;
    std::optional<Selected> selected_;
};

} // namespace accounts
