#include "accounts/clsAccountSQL.h"

#include "common/Numbers.h"
#include "common/Text.h"
#include "database/Query.h"

#include <limits>

namespace {

constexpr const char* kQuery = "SELECT * FROM glogin.account;";
constexpr std::int32_t kFirstAccountID = 100001;
/// The server's number for a value that another row has.
constexpr long kNameTaken = 1062;
/// Columns in the order in which they are written.
constexpr const char* kColumnNames[] = {"AID", "Name", "Pass", "Gender", "Mail"};

template <class Number> Number Narrow(std::int64_t value) {
    if (value < std::numeric_limits<Number>::min() || value > std::numeric_limits<Number>::max())
        throw RuntimeError(common::kOverflow);
    return static_cast<Number>(value);
}

} // namespace

/// Runs what moves through the records and comes back to the current one, where there is one.
template <class Operation> void clsAccountSQL::KeepingPlace(Operation operation) {
    const auto bookmark = OnRecord() ? std::optional(recordset_.Bookmark()) : std::nullopt;
    operation();
    if (bookmark)
        recordset_.Bookmark(*bookmark);
}

void clsAccountSQL::Begin() {
    lastError_.reset();
    connectionLost_ = false;
}

void clsAccountSQL::Note(const RuntimeError& error) {
    const auto* ofDatabase = dynamic_cast<const database::Error*>(&error);
    connectionLost_ = ofDatabase && ofDatabase->ConnectionLost();
    lastError_ = error;
}

// ---- Connection

gui::Task<std::int16_t> clsAccountSQL::ConnectSQL() {
    Begin();
    if (SQLHostname().empty() || SQLUsername().empty())
        co_return 0;
    Disconnect();
    try {
        std::string login =
            database::MySQLConnectionString(SQLHostname(), SQLUsername(), SQLPassword(), "glogin");
        co_await connection_.Open(std::move(login));
        co_await Open();
        LoadMirrors();
        connected_ = true;
        co_return 1;
    } catch (const RuntimeError& error) {
        Note(error);
    }
    Disconnect();
    co_return 0;
}

gui::Task<> clsAccountSQL::Open() {
    // The rows held now go only when the new ones are here and understood.
    database::Recordset fresh;
    co_await fresh.Open(connection_, kQuery, Reading);
    Columns columns{};
    for (std::size_t i = 0; i < columns.size(); ++i)
        columns[i] = fresh.FieldIndex(kColumnNames[i]);
    accounts::AccountIndex index;
    for (; !fresh.Eof(); fresh.MoveNext())
        index.Insert(fresh.Bookmark(), KeyOf(fresh, columns));
    if (fresh.RecordCount() > 0)
        fresh.MoveFirst();
    // Of two players with one number, the one who came later is told by the name.
    fresh.Identity({columns[kName]});
    const accounts::Widths widths = co_await ReadWidths();
    recordset_ = std::move(fresh);
    columns_ = columns;
    index_ = std::move(index);
    unnumbered_.clear();
    widths_ = widths;
}

gui::Task<accounts::Widths> clsAccountSQL::ReadWidths() {
    const database::Answer rows = co_await connection_.ReadAll("SHOW COLUMNS FROM glogin.account");
    const auto width = [&rows](Column column) {
        for (std::size_t row = 0; row < rows.Count(); ++row) {
            if (common::EqualsIgnoreCase(rows.At(row, 0).AsText(), kColumnNames[column]))
                return accounts::WidthOf(rows.At(row, 1).AsText());
        }
        throw RuntimeError(database::kItemNotFound);
    };
    const accounts::Widths widths{width(kName), width(kPass), width(kMail)};
    co_return widths;
}

void clsAccountSQL::Disconnect() {
    connected_ = false;
    index_.Clear();
    unnumbered_.clear();
    recordset_.Close();
    connection_.Close();
}

std::int16_t clsAccountSQL::DisconnectSQL() {
    return Run(std::int16_t{0}, [this](std::int16_t& done) {
        Disconnect();
        done = 1;
    });
}

gui::Task<std::int16_t> clsAccountSQL::RefreshAccountSQL() {
    Begin();
    std::int16_t done = 0;
    if (!connected_)
        co_return done;
    try {
        co_await connection_.Revive();
        co_await Open();
        done = 1;
        LoadMirrors();
    } catch (const RuntimeError& error) {
        Note(error);
    }
    co_return done;
}

gui::Task<std::int16_t> clsAccountSQL::UpdateAccountSQL() {
    Begin();
    std::int16_t done = 0;
    try {
        database::Recordset::Check check = [this](std::size_t row, const database::Fields& set) {
            return CheckName(row, set);
        };
        co_await recordset_.UpdateBatch(std::move(check));
        done = 1;
    } catch (const RuntimeError& error) {
        Note(error);
    }
    // Some may have been sent before the one that failed.
    if (recordset_.IsOpen())
        IndexNewNumbers();
    co_return done;
}

/// The checks while typing compare with the accounts as they were read; players register meanwhile.
gui::Task<> clsAccountSQL::CheckName(std::size_t row, database::Fields set) {
    const auto name = set[columns_[kName]];
    if (!name)
        co_return;
    const std::vector<database::Value> asked{*name};
    const database::Answer found =
        co_await connection_.ReadAll("SELECT AID, Name FROM glogin.account WHERE Name = ?", asked);
    const auto isOwn = [&](const database::Value& id) {
        const auto known = recordset_.ServerValue(row, columns_[kAID]);
        const auto& given = set[columns_[kAID]];
        // The latter when the change had arrived already, before the connection was lost.
        return (known && database::SameValue(id, *known)) || (given && database::SameValue(id, *given));
    };
    for (std::size_t i = 0; i < found.Count(); ++i) {
        const database::Value id = found.At(i, 0);
        // The server finds names in other capitals too.
        if (found.At(i, 1) == *name && !isOwn(id))
            throw database::Error(kNameTaken, "The name belongs to account " + id.AsText() + " by now.");
    }
}

void clsAccountSQL::IndexNewNumbers() {
    if (unnumbered_.empty())
        return;
    KeepingPlace([this] {
        std::erase_if(unnumbered_, [this](std::size_t row) {
            recordset_.Bookmark(row);
            const accounts::AccountKey key = CurrentKey();
            index_.Insert(row, key);
            return key.id.has_value();
        });
    });
}

// ---- The current account

bool clsAccountSQL::LoadMirrors() {
    if (!OnRecord())
        return false;
    // All or none: half of one account and half of another would be saved as one.
    const auto id = Narrow<std::int32_t>(Field(kAID).AsInteger());
    const auto sex = Narrow<std::int16_t>(Field(kGender).AsInteger());
    AccountID(id);
    AccountName(Field(kName).AsText());
    AccountPassword(Field(kPass).AsText());
    AccountSex(sex);
    AccountEmail(Field(kMail).AsText());
    return true;
}

accounts::AccountKey clsAccountSQL::KeyOf(const database::Recordset& set, const Columns& columns) {
    const database::Value id = set.Field(columns[kAID]);
    return {set.Field(columns[kName]).AsText(), id.IsNull() ? std::nullopt : std::optional(id.AsInteger())};
}

std::int32_t clsAccountSQL::NumOfAccounts() {
    return Run(std::int32_t{0},
               [this](std::int32_t& count) { count = static_cast<std::int32_t>(recordset_.RecordCount()); });
}

std::string clsAccountSQL::CurrentName() {
    return Run(std::string(), [this](std::string& name) { name = Field(kName).AsText(); });
}

std::int16_t clsAccountSQL::MoveToFirstRecord() {
    return Run(std::int16_t{0}, [this](std::int16_t& done) {
        if (!connected_)
            return;
        recordset_.MoveFirst();
        done = LoadMirrors();
    });
}

std::int16_t clsAccountSQL::MoveToNextRecord() {
    return Run(std::int16_t{0}, [this](std::int16_t& done) {
        if (!connected_ || recordset_.Eof())
            return;
        recordset_.MoveNext();
        done = LoadMirrors();
    });
}

std::int16_t clsAccountSQL::MoveToPrevRecord() {
    return Run(std::int16_t{0}, [this](std::int16_t& done) {
        if (!connected_ || recordset_.Bof())
            return;
        recordset_.MovePrevious();
        done = LoadMirrors();
    });
}

std::int16_t clsAccountSQL::MoveToAccount(const std::string& name) {
    return Run(std::int16_t{0}, [&](std::int16_t& done) {
        const auto row = index_.RowOfName(name);
        if (!connected_ || !row)
            return;
        recordset_.Bookmark(*row);
        done = LoadMirrors();
    });
}

/// Writes a column of the current account. A null that is shown as empty text or 0 stays null.
void clsAccountSQL::Put(Column column, const std::string& text) {
    const bool isNumber = column == kAID || column == kGender;
    const database::Value now = Field(column);
    if ((isNumber ? std::to_string(now.AsInteger()) : now.AsText()) == text)
        return;
    Field(column, isNumber ? database::Value(common::CLng(text)) : database::Value(text));
}

std::int16_t clsAccountSQL::SaveCurrentRecord() {
    return Run(std::int16_t{0}, [this](std::int16_t& done) {
        const std::size_t row = recordset_.Bookmark();
        const accounts::AccountKey before = CurrentKey();
        // AccountID is 0 while the server is still to give the account its number.
        if (before.id || AccountID() != 0)
            Put(kAID, std::to_string(AccountID()));
        Put(kName, AccountName());
        Put(kPass, AccountPassword());
        Put(kGender, std::to_string(AccountSex()));
        Put(kMail, AccountEmail());
        recordset_.Update();
        index_.Erase(row, before);
        index_.Insert(row, CurrentKey());
        done = 1;
    });
}

std::int16_t clsAccountSQL::DeleteRecord(const std::string& accountName) {
    return Run(std::int16_t{0}, [&](std::int16_t& done) {
        const auto row = index_.RowOfName(accountName);
        if (!row || !DeleteRow(*row))
            return;
        done = 1;
        if (recordset_.RecordCount() == 0)
            return;
        recordset_.MoveFirst();
        LoadMirrors();
    });
}

std::int16_t clsAccountSQL::AddNewAccount(const std::string& accountName, const std::string& accountPassword,
                                          const std::string& accountMail, std::int16_t accountGender,
                                          std::optional<std::int32_t> accountID) {
    return Run(std::int16_t{0}, [&](std::int16_t& done) {
        recordset_.AddNew();
        if (accountID)
            Field(kAID, *accountID);
        Field(kName, accountName);
        Field(kPass, accountPassword);
        Field(kGender, int{accountGender});
        Field(kMail, accountMail);
        recordset_.Update();
        index_.Insert(recordset_.Bookmark(), CurrentKey());
        if (!accountID)
            unnumbered_.push_back(recordset_.Bookmark());
        done = 1;
        LoadMirrors();
    });
}

// ---- Look-ups

bool clsAccountSQL::CheckAccountName(const std::string& accountName) {
    return Run(false, [&](bool& isFree) {
        isFree = recordset_.RecordCount() == 0 || !index_.RowOfName(accountName);
    });
}

bool clsAccountSQL::CheckAccountID(std::int32_t accountID) {
    return Run(false,
               [&](bool& isFree) { isFree = recordset_.RecordCount() == 0 || !index_.RowOfId(accountID); });
}

std::int32_t clsAccountSQL::GetUniqueAccountID() {
    return Run(std::int32_t{0}, [this](std::int32_t& id) {
        id = recordset_.RecordCount() == 0 ? kFirstAccountID : index_.FreeId(kFirstAccountID);
    });
}

std::int16_t clsAccountSQL::GetAccountList() {
    return Run(std::int16_t{0}, [this](std::int16_t& done) {
        if (recordset_.RecordCount() > 0)
            KeepingPlace([this] {
                for (recordset_.MoveFirst(); !recordset_.Eof(); recordset_.MoveNext())
                    if (AccountSQLAccountName)
                        AccountSQLAccountName(Field(kName).AsText());
            });
        done = 1;
    });
}
