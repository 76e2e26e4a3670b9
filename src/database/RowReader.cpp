#include "database/RowReader.h"

#include "common/Text.h"
#include "database/Error.h"
#include "database/FetchForm.h"
#include "database/Odbc.h"
#include "database/Parameters.h"

#include <algorithm>
#include <cstring>

namespace database {

namespace {

constexpr std::size_t kMostRows = 1000;
constexpr std::size_t kBlockBytes = std::size_t{4} * 1024 * 1024;

/// The fields of a column, in a block of rows.
struct Fetched : FetchForm {
    std::vector<char> data;
    std::vector<SQLLEN> lengths;
};

} // namespace

std::string Quoted(std::string_view name) {
    return "`" + common::ReplaceAll(name, "`", "``") + "`";
}

class RowReader::Result {
public:
    Result(const SessionPtr& session, const std::string& sql, const std::vector<Value>& parameters)
        : statement(session), wide(session->WideText()), utf8(session->Utf8Results()) {
        // Always prepared: only then does a server send reals in full.
        statement.Prepare(sql);
        if (!parameters.empty()) {
            given.Fill(wide, 1, parameters.size(),
                       [&](std::size_t, std::size_t column) { return Cell::Of(parameters[column]); });
            given.BindRows(statement);
        }
        statement.Execute();
    }

    Column Describe(SQLUSMALLINT number) {
        const DescribedColumn described = DescribeColumn(statement, number, wide, utf8);
        fetched.push_back({described.form, {}, {}});
        return described.column;
    }

    /// Binds the columns to arrays when all are of a bounded size.
    void BindBlock() {
        std::size_t width = 0;
        for (const Fetched& field : fetched) {
            if (field.size == 0)
                return;
            width += field.size + sizeof(SQLLEN);
        }
        rows = std::clamp<std::size_t>(kBlockBytes / std::max<std::size_t>(width, 1), 1, kMostRows);
        if (!statement.Set(SQL_ATTR_ROW_ARRAY_SIZE, rows)) {
            statement.Set(SQL_ATTR_ROW_ARRAY_SIZE, 1);
            rows = 1;
        }
        statement.SetPointer(SQL_ATTR_ROWS_FETCHED_PTR, &rowsFetched);
        for (std::size_t i = 0; i < fetched.size(); ++i) {
            Fetched& field = fetched[i];
            field.data.resize(rows * field.size);
            field.lengths.resize(rows);
            statement.Check(SQLBindCol(statement.Get(), static_cast<SQLUSMALLINT>(i + 1), field.cType,
                                       field.data.data(), static_cast<SQLLEN>(field.size),
                                       field.lengths.data()),
                            "SQLBindCol");
        }
    }

    std::size_t ReadBlock(RowStore& into) {
        rowsFetched = 0;
        if (!statement.Fetch())
            return 0;
        for (std::size_t row = 0; row < rowsFetched; ++row)
            for (const Fetched& field : fetched)
                Append(into, field, field.data.data() + row * field.size, field.lengths[row]);
        return rowsFetched;
    }

    /// Fetches rows one at a time, and each field in pieces until it is whole.
    std::size_t ReadLong(RowStore& into) {
        std::size_t count = 0;
        for (std::size_t bytes = 0; count < kMostRows && bytes < kBlockBytes && statement.Fetch(); ++count)
            for (std::size_t i = 0; i < fetched.size(); ++i)
                bytes += ReadField(into, fetched[i], static_cast<SQLUSMALLINT>(i + 1));
        return count;
    }

    odbc::Statement statement;
    const bool wide;
    const bool utf8;
    Parameters given;
    std::vector<Fetched> fetched;
    std::size_t rows = 0;

private:
    void Append(RowStore& into, const Fetched& field, const char* data, SQLLEN length) const {
        Cell cell;
        if (length == SQL_NULL_DATA) {
            into.Append(cell);
            return;
        }
        if (field.cType == SQL_C_SBIGINT) {
            cell.kind = Cell::Kind::Integer;
            std::memcpy(&cell.integer, data, sizeof cell.integer);
        } else if (field.cType == SQL_C_DOUBLE) {
            cell.kind = Cell::Kind::Real;
            std::memcpy(&cell.real, data, sizeof cell.real);
        } else {
            // Better no rows than cut ones.
            if (length < 0 || static_cast<std::size_t>(length) > field.size - field.endMark)
                throw Error(kDriverError, "The driver returned more data than it had announced.", "22001");
            AppendCharacters(into, field, {data, static_cast<std::size_t>(length)});
            return;
        }
        into.Append(cell);
    }

    static void AppendCharacters(RowStore& into, const Fetched& field, std::string_view data) {
        if (field.utf8) {
            into.AppendUtf8(data);
            return;
        }
        if (field.cType == SQL_C_WCHAR) {
            into.AppendWide({reinterpret_cast<const wchar_t*>(data.data()), data.size() / sizeof(wchar_t)});
            return;
        }
        Cell cell;
        cell.kind = field.cType == SQL_C_BINARY ? Cell::Kind::Bytes : Cell::Kind::Text;
        cell.characters = data.data();
        cell.length = static_cast<std::uint32_t>(data.size());
        into.Append(cell);
    }

    std::size_t ReadField(RowStore& into, const Fetched& field, SQLUSMALLINT number) {
        const bool characters =
            field.cType == SQL_C_WCHAR || field.cType == SQL_C_CHAR || field.cType == SQL_C_BINARY;
        std::size_t have = 0;
        if (buffer.empty())
            buffer.resize(FetchForm::kLongest + 1);
        for (;;) {
            SQLLEN length = 0;
            const SQLRETURN result = SQLGetData(statement.Get(), number, field.cType, buffer.data() + have,
                                                static_cast<SQLLEN>(buffer.size() - have), &length);
            if (result == SQL_NO_DATA)
                break;
            statement.Check(result, "SQLGetData");
            if (!characters || length == SQL_NULL_DATA) {
                Append(into, field, buffer.data(), length);
                return sizeof(Cell);
            }
            const std::size_t room = buffer.size() - have - field.endMark;
            if (length >= 0 && static_cast<std::size_t>(length) <= room) {
                have += static_cast<std::size_t>(length);
                break;
            }
            have += room;
            // Known lengths are made room for at once; an even size keeps UTF-16 units whole.
            const std::size_t missing = length > 0 ? static_cast<std::size_t>(length) - room : buffer.size();
            buffer.resize((have + missing + 16) & ~std::size_t{1});
        }
        AppendCharacters(into, field, {buffer.data(), have});
        return have;
    }

    SQLULEN rowsFetched = 0;
    std::vector<char> buffer;
};

RowReader::RowReader(const SessionPtr& session, const std::string& sql, const std::vector<Value>& parameters)
    : result_(std::make_unique<Result>(session, sql, parameters)) {
    const SQLSMALLINT count = result_->statement.ColumnCount();
    for (SQLSMALLINT i = 1; i <= count; ++i)
        columns_.push_back(result_->Describe(static_cast<SQLUSMALLINT>(i)));
    result_->BindBlock();
}

RowReader::~RowReader() = default;

std::size_t RowReader::RowsToCome() const {
    SQLLEN count = 0;
    const bool isKnown = SQL_SUCCEEDED(SQLRowCount(result_->statement.Get(), &count)) && count > 0;
    return isKnown ? static_cast<std::size_t>(count) : 0;
}

std::size_t RowReader::Read(RowStore& rows) {
    if (columns_.empty())
        return 0;
    return result_->rows > 0 ? result_->ReadBlock(rows) : result_->ReadLong(rows);
}

} // namespace database
