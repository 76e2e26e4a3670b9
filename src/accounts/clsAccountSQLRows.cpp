#include "accounts/clsAccountSQL.h"
#include "common/Numbers.h"

// The accounts by their rows, what waits for them, what the server has, and the privileges.

// ---- Rows

std::optional<std::size_t> clsAccountSQL::CurrentRow() {
    if (!recordset_.IsOpen() || !OnRecord())
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

accounts::AccountKey clsAccountSQL::KeyAt(std::size_t row) const {
    const database::Value id = recordset_.At(row, columns_[kAID]);
    return {recordset_.At(row, columns_[kName]).AsText(),
            id.IsNull() ? std::nullopt : std::optional(id.AsInteger())};
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

// ---- What the server has

gui::Task<clsAccountSQL::Found> clsAccountSQL::AskServer(std::int64_t accountID) {
    Begin();
    Found found;
    try {
        std::string query = "SELECT AID, Name, Pass, Gender, Mail FROM glogin.account WHERE AID = " +
                            std::to_string(accountID);
        const database::Answer rows = co_await connection_.ReadAll(std::move(query));
        found.asked = true;
        if (rows.Count() > 0)
            found.texts.emplace();
        for (std::size_t i = 0; found.texts && i < found.texts->size(); ++i)
            (*found.texts)[i] = rows.At(0, i).AsText();
    } catch (const RuntimeError& error) {
        Note(error);
    }
    co_return found;
}

gui::Task<std::optional<clsAccountSQL::Names>> clsAccountSQL::AskNames(std::vector<std::int32_t> ids) {
    constexpr std::size_t kAtOnce = 500;
    Begin();
    std::optional<Names> names;
    try {
        Names found;
        if (!ids.empty())
            co_await connection_.Revive();
        for (std::size_t first = 0; first < ids.size(); first += kAtOnce) {
            std::string list;
            for (std::size_t i = first; i < std::min(ids.size(), first + kAtOnce); ++i)
                list += (list.empty() ? "" : ",") + std::to_string(ids[i]);
            std::string query = "SELECT AID, Name FROM glogin.account WHERE AID IN (" + list + ")";
            const database::Answer rows = co_await connection_.ReadAll(std::move(query));
            for (std::size_t row = 0; row < rows.Count(); ++row)
                found[static_cast<std::int32_t>(rows.At(row, 0).AsInteger())] = rows.At(row, 1).AsText();
        }
        names = std::move(found);
    } catch (const RuntimeError& error) {
        Note(error);
    }
    co_return names;
}

void clsAccountSQL::ServerHas(std::size_t row, const accounts::FieldTexts& found) {
    database::Fields fields(recordset_.ColumnCount());
    for (const accounts::Field field : accounts::kFields) {
        const auto& text = found[accounts::Index(field)];
        const bool isNumber = field == accounts::Field::Id || field == accounts::Field::Sex;
        // What the server still has the same stays as it was read, null included.
        if (text && text != ServerText(row, field))
            fields[ColumnOf(field)] =
                isNumber ? database::Value(common::CLng(*text)) : database::Value(*text);
    }
    const accounts::AccountKey before = KeyAt(row);
    recordset_.ServerHas(row, fields);
    index_.Erase(row, before);
    index_.Insert(row, KeyAt(row));
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
