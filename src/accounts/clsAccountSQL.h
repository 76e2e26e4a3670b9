#pragma once

#include "accounts/AccountIndex.h"
#include "accounts/GMTable.h"
#include "common/Property.h"
#include "common/RuntimeError.h"
#include "database/Connection.h"
#include "database/Recordset.h"

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

/// The game accounts of the login database, and the privileges of the game masters among them.
///
/// All accounts are held on this side, with a current one whose columns stand in the Account properties.
/// Changes stay here until UpdateAccountSQL (accounts) and UpdateGMData (privileges) send them. Operations
/// return 1 when done and 0 when not, and raise nothing: what went wrong is in LastError. What concerns the
/// accounts needs a connection; the privileges are in a file and need none.
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
    std::int16_t ConnectSQL();
    std::int16_t DisconnectSQL();
    bool Connected() const { return connected_; }
    /// Reads the accounts again, with a new login when the server was gone. Changes that were not sent are
    /// then lost; when it fails, everything stays as it was.
    std::int16_t RefreshAccountSQL();
    /// Sends all changes. What the server refuses, or somebody else has changed or removed in the meantime,
    /// stays here with the rest of a lost connection's, and can be sent again.
    std::int16_t UpdateAccountSQL();
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
    std::int16_t UpdateGMData();
    std::int16_t AddGMData(std::int32_t lngID, const accounts::Privileges& flags);
    std::int16_t RemoveGMData(std::int32_t lngID);
    std::int16_t ModifyGMData(std::int32_t lngID, const accounts::Privileges& flags);
    accounts::Privileges RetrieveGMData(std::int32_t lngID);
    std::int16_t AccountIsAGM(std::int32_t lngID);

    /// Why the last operation failed; none when it did not, or when there was nothing to do it on.
    const std::optional<RuntimeError>& LastError() const { return lastError_; }

private:
    enum Column { kAID, kName, kPass, kGender, kMail, kColumnCount };

    template <class Result, class Operation> Result Run(Result initial, Operation operation);
    database::Value Field(Column column) const { return recordset_.Field(columns_[column]); }
    void Field(Column column, database::Value value) { recordset_.Field(columns_[column], std::move(value)); }
    bool OnRecord() const { return !recordset_.Bof() && !recordset_.Eof(); }
    using Columns = std::array<std::size_t, kColumnCount>;
    static accounts::AccountKey KeyOf(const database::Recordset& set, const Columns& columns);
    accounts::AccountKey CurrentKey() const { return KeyOf(recordset_, columns_); }
    void Open();
    void Disconnect();
    bool LoadMirrors();
    template <class Operation> void KeepingPlace(Operation operation);
    void IndexNewNumbers();
    std::string GMPath() const;

    database::Connection connection_;
    database::Recordset recordset_;
    bool connected_ = false;
    Columns columns_{};
    accounts::AccountIndex index_;
    /// Rows that get their number when they are sent.
    std::vector<std::size_t> unnumbered_;
    accounts::GMTable gameMasters_;
    std::optional<RuntimeError> lastError_;
};
