#include "accounts/clsAccountSQL.h"

// The accounts by their rows, what waits for them, and the privileges.

// ---- Rows

std::optional<std::size_t> clsAccountSQL::CurrentRow() {
    if (!recordset_.IsCurrent())
        return std::nullopt;
    return recordset_.Bookmark();
}

std::int16_t clsAccountSQL::MoveToRow(std::size_t row) {
    return Run(std::int16_t{0}, [&](std::int16_t& done) {
        recordset_.Bookmark(row);
        done = LoadMirrors();
    });
}

std::int16_t clsAccountSQL::DeleteRow(std::size_t row) {
    return Run(std::int16_t{0}, [&](std::int16_t& done) {
        recordset_.Bookmark(row);
        const accounts::AccountKey key = CurrentKey();
        recordset_.Delete();
        index_.Erase(row, key);
        std::erase(unnumbered_, row);
        done = 1;
    });
}

std::optional<std::size_t> clsAccountSQL::RowOfAccount(std::int32_t accountID) const {
    return index_.RowOfId(accountID);
}

std::optional<std::size_t> clsAccountSQL::RowOfName(const std::string& accountName) const {
    return index_.RowOfName(accountName);
}

std::size_t clsAccountSQL::CountOfName(const std::string& accountName) const {
    return index_.CountOfName(accountName);
}

std::string clsAccountSQL::Text(std::size_t row, accounts::Field field) const {
    return recordset_.At(row, ColumnOf(field)).AsText();
}

bool clsAccountSQL::NameIsLossy(std::size_t row) const {
    return recordset_.IsLossy(row, columns_[kName]);
}

// ---- What waits

std::optional<std::string> clsAccountSQL::ServerText(std::size_t row, accounts::Field field) const {
    const auto value = recordset_.ServerValue(row, ColumnOf(field));
    return value ? std::optional(value->AsText()) : std::nullopt;
}

std::int16_t clsAccountSQL::TakingBack(std::size_t row, const std::function<bool()>& takeBack) {
    return Run(std::int16_t{0}, [&](std::int16_t& done) {
        const accounts::AccountKey before = KeyAt(row);
        const State state = StateOf(row);
        if (!takeBack())
            return;
        index_.Erase(row, before);
        std::erase(unnumbered_, row);
        if (state != State::Added)
            index_.Insert(row, KeyAt(row));
        done = 1;
    });
}

std::int16_t clsAccountSQL::TakeBack(std::size_t row) {
    return TakingBack(row, [&] { return recordset_.TakeBack(row); });
}

std::int16_t clsAccountSQL::TakeBack(std::size_t row, accounts::Field field) {
    return TakingBack(row, [&] { return recordset_.TakeBack(row, ColumnOf(field)); });
}

void clsAccountSQL::Forget(std::size_t row) {
    recordset_.Forget(row);
}

// ---- Privileges

std::string clsAccountSQL::GMPath() const {
    return KernoPath() + "\\database\\" + GMIdTableFilename();
}

std::int16_t clsAccountSQL::LoadGMData() {
    return Run(std::int16_t{0}, [this](std::int16_t& done) {
        gameMasters_.Load(GMPath());
        done = 1;
    });
}

std::int16_t clsAccountSQL::UpdateGMData(const accounts::GMTable::Judge& judge) {
    return Run(std::int16_t{0}, [&](std::int16_t& done) {
        met_ = gameMasters_.Save(GMPath(), judge);
        done = 1;
    });
}

std::int16_t clsAccountSQL::AddGMData(std::int32_t lngID, const accounts::Privileges& flags) {
    return Run(std::int16_t{0}, [&](std::int16_t& done) { done = gameMasters_.Add(lngID, flags); });
}

std::int16_t clsAccountSQL::RemoveGMData(std::int32_t lngID) {
    return Run(std::int16_t{0}, [&](std::int16_t& done) { done = gameMasters_.Remove(lngID); });
}

std::int16_t clsAccountSQL::ModifyGMData(std::int32_t lngID, const accounts::Privileges& flags) {
    return Run(std::int16_t{0}, [&](std::int16_t& done) { done = gameMasters_.Modify(lngID, flags); });
}

std::int16_t clsAccountSQL::TakeBackGMData(std::int32_t lngID) {
    return Run(std::int16_t{0}, [&](std::int16_t& done) {
        gameMasters_.TakeBack(lngID);
        done = 1;
    });
}

std::int16_t clsAccountSQL::RemoveGMDoubles(std::int32_t lngID) {
    return Run(std::int16_t{0}, [&](std::int16_t& done) {
        gameMasters_.RemoveDoubles(lngID);
        done = 1;
    });
}

accounts::Privileges clsAccountSQL::RetrieveGMData(std::int32_t lngID) {
    return gameMasters_.Retrieve(lngID);
}

std::int16_t clsAccountSQL::AccountIsAGM(std::int32_t lngID) {
    return gameMasters_.Contains(lngID);
}
