#include "accounts/clsAccountSQL.h"
#include "common/Numbers.h"
#include "common/Text.h"
#include "database/Query.h"

// What the store asks of the server.

namespace {

constexpr const char* kQuery = "SELECT * FROM glogin.account;";
/// The server's number for a value that another row has.
constexpr long kNameTaken = 1062;
/// Columns in the order in which they are written.
constexpr const char* kColumnNames[] = {"AID", "Name", "Pass", "Gender", "Mail"};

} // namespace

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
    const auto keyOf = [&](std::size_t row) { return KeyOf(fresh, columns, row); };
    accounts::AccountIndex index(fresh.RecordCount(), keyOf);
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
        database::Recordset::Check check{
            {columns_[kName]},
            [this](std::size_t row, const database::Fields& set) { return CheckName(row, set); }};
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
    const database::Value name = *set[columns_[kName]];
    const std::vector<database::Value> asked{name};
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
        if (found.At(i, 1) == name && !isOwn(id))
            throw database::Error(kNameTaken, "The name belongs to account " + id.AsText() + " by now.");
    }
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
