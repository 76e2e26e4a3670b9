#pragma once

#include "accounts/AccountChecks.h"
#include "accounts/AccountFields.h"
#include "accounts/AccountIndex.h"
#include "accounts/GMTable.h"
#include "common/Property.h"
#include "common/RuntimeError.h"
#include "database/Connection.h"
#include "database/Error.h"
#include "database/Recordset.h"
#include "gui/Task.h"

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

/// The game accounts of the login database, and the privileges of the game masters among them.
///
/// All accounts are held on this side, with a current one whose columns stand in the Account properties.
/// Changes stay here until UpdateAccountSQL (accounts) and UpdateGMData (privileges) send them. Operations
/// return 1 when done and 0 when not, and raise nothing: what went wrong is in LastError. What concerns the
/// accounts needs a connection; the privileges are in a file and need none. While a task of the store waits
/// for the server, nothing else is asked of it than what it holds.
class clsAccountSQL {
public:
    clsAccountSQL() = default;
    clsAccountSQL(const clsAccountSQL&) = delete;
    clsAccountSQL& operator=(const clsAccountSQL&) = delete;

    common::Property<std::string> SQLHostname;
    common::Property<std::string> SQLUsername;
    common::Property<std::string> SQLPassword;
    /// The servers' folder, ending in a backslash.
    common::Property<std::string> KernoPath;
    /// Name of the privilege file in the servers' "database" folder.
    common::Property<std::string> GMIdTableFilename{"id_table.txt"};
    /// The zone server's second privilege file; what it holds is the server's own affair.
    static constexpr const char* kPlayerFilename = "player.txt";

    // The columns of the current account.
    common::Property<std::int32_t> AccountID;
    common::Property<std::string> AccountName;
    common::Property<std::string> AccountPassword;
    /// 0 female, 1 male.
    common::Property<std::int16_t> AccountSex;
    common::Property<std::string> AccountEmail;

    // Held for whoever uses the store; it neither fills nor saves them.
    common::Property<std::string> AccountLogin;
    common::Property<std::string> Character1, Character2, Character3, Character4, Character5, Character6,
        Character7, Character8, Character9;
    common::Property<std::int16_t> IsAGM;

    /// For failures that no result tells of; there are none at present.
    std::function<void(const std::string& description)> AccountSQLError;
    /// Gets every account's name from GetAccountList.
    std::function<void(const std::string& AccountsName)> AccountSQLAccountName;
    /// Told the number of accounts read so far while ConnectSQL and RefreshAccountSQL read them.
    std::function<void(std::size_t accounts)> Reading;

    /// Logs in and reads all accounts; the first becomes current. 0 without touching the server when host or
    /// user name is empty; after any other failure there is no connection, and changes are gone.
    gui::Task<std::int16_t> ConnectSQL();
    std::int16_t DisconnectSQL();
    bool Connected() const { return connected_; }
    /// Reads the accounts again, with a new login when the server was gone. Changes that were not sent are
    /// then lost; when it fails, everything stays as it was.
    gui::Task<std::int16_t> RefreshAccountSQL();
    /// Sends all changes. What the server refuses, or somebody else has changed or removed in the meantime,
    /// stays here with the rest of a lost connection's, and can be sent again. So does an account whose new
    /// name another one has got on the server since the accounts were read.
    gui::Task<std::int16_t> UpdateAccountSQL();
    /// What the last UpdateAccountSQL could not send, and why; empty when the connection was lost.
    const std::vector<database::Recordset::Refusal>& Refusals() const { return recordset_.Refusals(); }
    /// True when the last operation failed because the server is gone.
    bool ConnectionLost() const { return connectionLost_; }
    /// Changes that were not sent yet.
    std::size_t PendingChanges() const { return recordset_.PendingChanges(); }

    std::int32_t NumOfAccounts();
    std::string CurrentName();
    std::int16_t MoveToFirstRecord();
    std::int16_t MoveToNextRecord();
    std::int16_t MoveToPrevRecord();
    /// Goes to the first account of the name, as stepping through all of them would.
    std::int16_t MoveToAccount(const std::string& name);

    /// Takes the Account properties over into the current account.
    std::int16_t SaveCurrentRecord();
    /// Deletes the first account of the name and goes to the first that is left.
    std::int16_t DeleteRecord(const std::string& accountName);
    /// Appends an account, which becomes current. Without a number the server gives it one when it is sent.
    std::int16_t AddNewAccount(const std::string& accountName, const std::string& accountPassword,
                               const std::string& accountMail, std::int16_t accountGender,
                               std::optional<std::int32_t> accountID = std::nullopt);

    // The accounts by their rows. A row is good until the accounts are read again; names may look alike, or
    // be alike.

    /// The rows of all accounts, first to last.
    std::vector<std::size_t> Rows() const { return recordset_.Rows(); }
    std::optional<std::size_t> CurrentRow();
    std::int16_t MoveToRow(std::size_t row);
    /// Deletes the account; no account is current then.
    std::int16_t DeleteRow(std::size_t row);
    std::optional<std::size_t> RowOfAccount(std::int32_t accountID) const;
    std::optional<std::size_t> RowOfName(const std::string& accountName) const;
    std::size_t CountOfName(const std::string& accountName) const;
    /// A column as this side has it; "" where it is empty or has no number yet.
    std::string Text(std::size_t row, accounts::Field field) const;
    /// True when the name has characters that cannot be shown.
    bool NameIsLossy(std::size_t row) const;
    /// What the server's columns have room for.
    const accounts::Widths& ColumnWidths() const { return widths_; }

    // What waits for UpdateAccountSQL.

    using State = database::Recordset::State;
    std::vector<std::size_t> WaitingRows() const { return recordset_.PendingRows(); }
    State StateOf(std::size_t row) const { return recordset_.StateOf(row); }
    /// A column as the server has it, as far as known here; none for a new account.
    std::optional<std::string> ServerText(std::size_t row, accounts::Field field) const;
    /// True when a change of the column was sent whose answer the lost connection has taken along.
    bool MayHaveArrived(std::size_t row, accounts::Field field) const {
        return recordset_.MayHaveArrived(row, ColumnOf(field));
    }
    /// Forgets what waits for the account. 0 when it may have arrived at the server already.
    std::int16_t TakeBack(std::size_t row);
    /// The same for one column of a changed account.
    std::int16_t TakeBack(std::size_t row, accounts::Field field);
    /// Forgets a deletion of an account that the server does not have any more.
    void Forget(std::size_t row);

    // What the server has at this moment.

    /// The account with the number, none when there is none. `asked` is false when the server cannot be
    /// asked.
    struct Found {
        bool asked = false;
        std::optional<accounts::FieldTexts> texts;
    };
    gui::Task<Found> AskServer(std::int64_t accountID);
    /// The names of those accounts of `ids` that the server has; none when it cannot be asked.
    using Names = std::map<std::int32_t, std::string>;
    gui::Task<std::optional<Names>> AskNames(std::vector<std::int32_t> ids);
    /// Goes on from what AskServer found; changes that wait for the account stay.
    void ServerHas(std::size_t row, const accounts::FieldTexts& found);

    // Look-ups; the current account stays current.

    /// True when no account has this name, to the letter.
    bool CheckAccountName(const std::string& accountName);
    /// True when no account has this number.
    bool CheckAccountID(std::int32_t accountID);
    /// The smallest free number from 100001 upwards.
    std::int32_t GetUniqueAccountID();
    /// Hands every name, first account to last, to AccountSQLAccountName.
    std::int16_t GetAccountList();

    // The privileges; see GMTable.

    std::int16_t LoadGMData();
    /// True when the last LoadGMData failed and no UpdateGMData has written the file since.
    bool GMDataMissing() const { return gameMasters_.LoadFailed(); }
    /// `judge`: see GMTable::Save.
    std::int16_t UpdateGMData(const accounts::GMTable::Judge& judge = {});
    /// What the last UpdateGMData met.
    const accounts::GMTable::Met& GMDataMet() const { return met_; }
    const accounts::GMTable& GMData() const { return gameMasters_; }
    std::int16_t TakeBackGMData(std::int32_t lngID);
    std::int16_t RemoveGMDoubles(std::int32_t lngID);
    std::string GMPath() const;
    std::int16_t AddGMData(std::int32_t lngID, const accounts::Privileges& flags);
    std::int16_t RemoveGMData(std::int32_t lngID);
    std::int16_t ModifyGMData(std::int32_t lngID, const accounts::Privileges& flags);
    accounts::Privileges RetrieveGMData(std::int32_t lngID);
    std::int16_t AccountIsAGM(std::int32_t lngID);

    /// Why the last operation failed; none when it did not, or when there was nothing to do it on.
    const std::optional<RuntimeError>& LastError() const { return lastError_; }

private:
    // In the order of accounts::Field.
    enum Column { kAID, kName, kPass, kGender, kMail, kColumnCount };

    /// Runs an operation, which sets its result as it gets on; an error ends it and leaves the result at
    /// that.
    template <class Result, class Operation> Result Run(Result initial, Operation operation) {
        Result result = initial;
        Begin();
        try {
            operation(result);
        } catch (const RuntimeError& error) {
            Note(error);
        }
        return result;
    }
    void Begin();
    void Note(const RuntimeError& error);
    database::Value Field(Column column) const { return recordset_.Field(columns_[column]); }
    void Field(Column column, database::Value value) { recordset_.Field(columns_[column], std::move(value)); }
    using Columns = std::array<std::size_t, kColumnCount>;
    static accounts::AccountKey KeyOf(const database::Recordset& set, const Columns& columns,
                                      std::size_t row);
    accounts::AccountKey KeyAt(std::size_t row) const { return KeyOf(recordset_, columns_, row); }
    accounts::AccountKey CurrentKey() const { return KeyAt(recordset_.Bookmark()); }
    gui::Task<> Open();
    void Disconnect();
    bool LoadMirrors();
    template <class Operation> void KeepingPlace(Operation operation);
    void IndexNewNumbers();
    gui::Task<accounts::Widths> ReadWidths();
    void Put(Column column, const std::string& text);
    gui::Task<> CheckName(std::size_t row, database::Fields set);
    std::int16_t TakingBack(std::size_t row, const std::function<bool()>& takeBack);
    std::size_t ColumnOf(accounts::Field field) const { return columns_[accounts::Index(field)]; }

    database::Connection connection_;
    database::Recordset recordset_;
    bool connected_ = false;
    Columns columns_{};
    accounts::AccountIndex index_;
    /// Rows that get their number when they are sent.
    std::vector<std::size_t> unnumbered_;
    accounts::Widths widths_;
    accounts::GMTable gameMasters_;
    accounts::GMTable::Met met_;
    std::optional<RuntimeError> lastError_;
    bool connectionLost_ = false;
};
