#include "accounts/clsAccountSQL.h"

#include "common/Numbers.h"
#include "common/Text.h"
#include "database/Query.h"

#include <limits>

namespace {

constexpr std::int32_t kFirstAccountID = 100001;

template <class Number> Number Narrow(std::int64_t value) {
    if (value < std::numeric_limits<Number>::min() || value > std::numeric_limits<Number>::max())
        throw RuntimeError(common::kOverflow);
    return static_cast<Number>(value);
}

} // namespace

/// Runs what moves through the records and comes back to the current one, where there is one.
template <class Operation> void clsAccountSQL::KeepingPlace(Operation operation) {
    const auto bookmark = recordset_.IsCurrent() ? std::optional(recordset_.Bookmark()) : std::nullopt;
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

void clsAccountSQL::IndexNewNumbers() {
    if (unnumbered_.empty())
        return;
    KeepingPlace([this] {
        std::erase_if(unnumbered_, [this](std::size_t row) {
            recordset_.Bookmark(row);
            const accounts::AccountKey key = CurrentKey();
            index_.Erase(row, key);
            index_.Insert(row, key);
            return key.id.has_value();
        });
    });
}

// ---- The current account

bool clsAccountSQL::LoadMirrors() {
    if (!recordset_.IsCurrent())
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

accounts::AccountKey clsAccountSQL::KeyOf(const database::Recordset& set, const Columns& columns,
                                          std::size_t row) {
    const database::Value id = set.At(row, columns[kAID]);
    return {set.At(row, columns[kName]).AsText(), id.IsNull() ? std::nullopt : std::optional(id.AsInteger())};
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
        // What was typed back again has nothing to wait for.
        if (recordset_.IsAsOnServer(row))
            recordset_.TakeBack(row);
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
