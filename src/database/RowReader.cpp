#include "database/RowReader.h"

#include "common/Text.h"
#include "database/Error.h"
#include "database/Odbc.h"
#include "database/Parameters.h"

#include <algorithm>
#include <cstring>

namespace database {

namespace {

constexpr std::size_t kMostRows = 1000;
constexpr std::size_t kBlockBytes = std::size_t{4} * 1024 * 1024;
/// Characters or bytes up to which a column is fetched in blocks. What may be longer is asked for row by row.
constexpr std::size_t kLongest = 65535;

/// How a column's fields are fetched.
struct Fetched {
    SQLSMALLINT cType = SQL_C_CHAR;
    /// The bytes fetched are text in UTF-8.
    bool utf8 = false;
    /// Bytes of a field, with the end mark that text carries; 0 when they are not bounded usefully.
    std::size_t size = 0;
    std::size_t endMark = 0;
    std::vector<char> data;
    std::vector<SQLLEN> lengths;
};

std::string TextAttribute(SQLHSTMT statement, SQLUSMALLINT column, SQLUSMALLINT attribute) {
    SQLWCHAR text[256] = {};
    SQLSMALLINT length = 0;
    if (!SQL_SUCCEEDED(SQLColAttributeW(statement, column, attribute, text, sizeof text, &length, nullptr)))
        return {};
    return common::ToNarrow(text);
}

SQLLEN NumberAttribute(SQLHSTMT statement, SQLUSMALLINT column, SQLUSMALLINT attribute) {
    SQLLEN number = 0;
    if (!SQL_SUCCEEDED(SQLColAttributeW(statement, column, attribute, nullptr, 0, nullptr, &number)))
        return 0;
    return number;
}

Cell::Kind KindOf(SQLLEN type, bool isUnsigned) {
    switch (type) {
    case SQL_BIT:
    case SQL_TINYINT:
    case SQL_SMALLINT:
    case SQL_INTEGER:
        return Cell::Kind::Integer;
    case SQL_BIGINT:
        return isUnsigned ? Cell::Kind::Text : Cell::Kind::Integer;
    case SQL_REAL:
    case SQL_FLOAT:
    case SQL_DOUBLE:
        return Cell::Kind::Real;
    case SQL_BINARY:
    case SQL_VARBINARY:
    case SQL_LONGVARBINARY:
        return Cell::Kind::Bytes;
    default:
        return Cell::Kind::Text;
    }
}

bool IsCharacterType(SQLLEN type) {
    switch (type) {
    case SQL_CHAR:
    case SQL_VARCHAR:
    case SQL_LONGVARCHAR:
    case SQL_WCHAR:
    case SQL_WVARCHAR:
    case SQL_WLONGVARCHAR:
        return true;
    default:
        return false;
    }
}

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
        const SQLHSTMT handle = statement.Get();
        Column column;
        column.name = TextAttribute(handle, number, SQL_DESC_LABEL);
        column.baseDatabase = TextAttribute(handle, number, SQL_DESC_CATALOG_NAME);
        column.baseTable = TextAttribute(handle, number, SQL_DESC_BASE_TABLE_NAME);
        column.baseName = TextAttribute(handle, number, SQL_DESC_BASE_COLUMN_NAME);
        column.autoNumber = NumberAttribute(handle, number, SQL_DESC_AUTO_UNIQUE_VALUE) == SQL_TRUE;
        const SQLLEN type = NumberAttribute(handle, number, SQL_DESC_CONCISE_TYPE);
        column.kind = KindOf(type, NumberAttribute(handle, number, SQL_DESC_UNSIGNED) == SQL_TRUE);
        const auto length = static_cast<std::size_t>(
            std::max<SQLLEN>(0, std::max(NumberAttribute(handle, number, SQL_DESC_LENGTH),
                                         NumberAttribute(handle, number, SQL_DESC_DISPLAY_SIZE))));
        fetched.push_back(Shape(column.kind, type, length));
        return column;
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

    std::size_t RowsToCome() const {
        SQLLEN count = 0;
        const bool isKnown = SQL_SUCCEEDED(SQLRowCount(statement.Get(), &count)) && count > 0;
        return isKnown ? static_cast<std::size_t>(count) : 0;
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
    Fetched Shape(Cell::Kind kind, SQLLEN type, std::size_t length) const {
        switch (kind) {
        case Cell::Kind::Integer:
            return {.cType = SQL_C_SBIGINT, .size = sizeof(SQLBIGINT), .data = {}, .lengths = {}};
        case Cell::Kind::Real:
            // Single precision too: a double holds it exactly, and MariaDB's driver 3.1 puts arrays of
            // SQL_C_FLOAT at the wrong places.
            return {.cType = SQL_C_DOUBLE, .size = sizeof(double), .data = {}, .lengths = {}};
        default:
            break;
        }
        const bool bounded = length > 0 && length <= kLongest;
        if (kind == Cell::Kind::Bytes)
            return {.cType = SQL_C_BINARY, .size = bounded ? length : 0, .data = {}, .lengths = {}};
        // UTF-8 is taken as bytes and converted here: MariaDB's driver 3.1 sets up a converter anew for each
        // field that it hands over in UTF-16, which takes most of the time of reading.
        if (IsCharacterType(type) && utf8)
            return {.cType = SQL_C_BINARY,
                    .utf8 = true,
                    .size = bounded ? 4 * length : 0,
                    .data = {},
                    .lengths = {}};
        // Room for characters that take two units in UTF-16, or up to three bytes in the ANSI code page. The
        // text of numbers and dates is plain ASCII in any form.
        const bool inUtf16 = wide && IsCharacterType(type);
        const std::size_t unit = inUtf16 ? sizeof(SQLWCHAR) : 1;
        return {.cType = static_cast<SQLSMALLINT>(inUtf16 ? SQL_C_WCHAR : SQL_C_CHAR),
                .size = bounded ? (inUtf16 ? 2 * length + 1 : 3 * length + 1) * unit : 0,
                .endMark = unit,
                .data = {},
                .lengths = {}};
    }

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
            buffer.resize(kLongest + 1);
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
    rowsToCome_ = result_->RowsToCome();
    result_->BindBlock();
}

RowReader::~RowReader() = default;

std::size_t RowReader::Read(RowStore& rows) {
    if (columns_.empty())
        return 0;
    return result_->rows > 0 ? result_->ReadBlock(rows) : result_->ReadLong(rows);
}

} // namespace database
