#include "database/Odbc.h"

#include "common/Text.h"
#include "database/Error.h"

#include <algorithm>
#include <vector>

namespace database {

SessionUse::SessionUse(SessionPtr session) : session_(std::move(session)) {
    session_->InUse().lock();
}

SessionUse::~SessionUse() {
    session_->InUse().unlock();
}

} // namespace database

namespace database::odbc {

namespace {

/// The state that driver managers have for a driver of an unknown name.
constexpr const char* kDriverNotFound = "IM002";

/// "[vendor][driver 1.0]Text" without the senders in front.
std::string WithoutSenders(std::string_view text) {
    while (text.starts_with('[') && text.find(']') != std::string_view::npos)
        text.remove_prefix(text.find(']') + 1);
    return common::Trim(text);
}

struct Diagnostic {
    std::string state;
    SQLINTEGER native = 0;
    std::string text;
};

/// The `number`th record, from 1, that the last call left on the handle; none behind the last one.
std::optional<Diagnostic> ReadDiagnostic(SQLSMALLINT kind, SQLHANDLE handle, SQLSMALLINT number) {
    SQLWCHAR state[6] = {};
    std::vector<SQLWCHAR> text(1024);
    SQLINTEGER native = 0;
    SQLSMALLINT length = 0;
    const auto read = [&] {
        return SQL_SUCCEEDED(SQLGetDiagRecW(kind, handle, number, state, &native, text.data(),
                                            static_cast<SQLSMALLINT>(text.size()), &length));
    };
    bool there = read();
    if (there && static_cast<std::size_t>(length) >= text.size()) {
        text.assign(static_cast<std::size_t>(length) + 1, 0);
        there = read();
    }
    if (!there)
        return {};
    return Diagnostic{common::ToNarrow(state), native, WithoutSenders(common::ToNarrow(text.data()))};
}

/// Raises what the call `name` left behind: the number and state of the first record, the texts of all, and
/// behind them the call and its state, or what it returned where there is no record.
[[noreturn]] void RaiseDiagnostic(SQLSMALLINT kind, SQLHANDLE handle, const char* name, SQLRETURN result) {
    const auto first = ReadDiagnostic(kind, handle, 1);
    if (!first)
        Raise(kDriverError, " (" + std::string(name) + ", return code " + std::to_string(result) + ")");
    std::vector<std::string> texts{first->text};
    // Of an array of parameters each refused row has a record, most of them with the same text.
    for (SQLSMALLINT number = 2; const auto next = ReadDiagnostic(kind, handle, number); ++number)
        if (std::ranges::find(texts, next->text) == texts.end())
            texts.push_back(next->text);
    std::string text;
    for (const std::string& each : texts)
        text += (text.empty() ? "" : "\n") + each;
    throw Error(first->native != 0 ? first->native : kDriverError,
                text + " (" + name + ", " + first->state + ")", first->state);
}

SQLHANDLE Allocate(SQLSMALLINT kind, SQLSMALLINT parentKind, SQLHANDLE parent) {
    SQLHANDLE handle = SQL_NULL_HANDLE;
    const SQLRETURN result = SQLAllocHandle(kind, parent, &handle);
    if (!SQL_SUCCEEDED(result)) {
        if (parent == SQL_NULL_HANDLE)
            throw Error(kDriverError, "ODBC is not available.");
        RaiseDiagnostic(parentKind, parent, "SQLAllocHandle", result);
    }
    return handle;
}

/// The name between the braces of "DRIVER={name};...", "" when there is none.
std::string DriverOf(std::string_view connectionString) {
    constexpr std::string_view kKey = "DRIVER={";
    const std::size_t at = connectionString.find(kKey);
    if (at == std::string_view::npos)
        return {};
    const std::string_view name = connectionString.substr(at + kKey.size());
    return std::string(name.substr(0, name.find('}')));
}

SQLPOINTER Number(SQLULEN value) {
    return reinterpret_cast<SQLPOINTER>(value);
}

} // namespace

Session::Session(const std::string& connectionString, unsigned loginSeconds) {
    environment_.reset(Allocate(SQL_HANDLE_ENV, 0, SQL_NULL_HANDLE));
    SQLSetEnvAttr(environment_.get(), SQL_ATTR_ODBC_VERSION, Number(SQL_OV_ODBC3), 0);
    connection_.reset(Allocate(SQL_HANDLE_DBC, SQL_HANDLE_ENV, environment_.get()));
    // A driver that knows no login timeout declines this, and waits as long as it does.
    SQLSetConnectAttrW(connection_.get(), SQL_ATTR_LOGIN_TIMEOUT, Number(loginSeconds), SQL_IS_UINTEGER);
    std::wstring wide = common::ToWide(connectionString);
    SQLSMALLINT length = 0;
    SQLWCHAR completed[1024];
    const SQLRETURN result =
        SQLDriverConnectW(connection_.get(), nullptr, wide.data(), static_cast<SQLSMALLINT>(wide.size()),
                          completed, std::size(completed), &length, SQL_DRIVER_NOPROMPT);
    if (SQL_SUCCEEDED(result))
        return;
    // Newer Wines leave no record of a driver that cannot be loaded, whose own ones tell of all else.
    if (!ReadDiagnostic(SQL_HANDLE_DBC, connection_.get(), 1))
        throw Error(kDriverError,
                    "The ODBC driver \"" + DriverOf(connectionString) +
                        "\" could not be loaded. It is not installed, or not as one for " +
                        std::to_string(sizeof(void*) * 8) + "-bit programs. (SQLDriverConnect, return code " +
                        std::to_string(result) + ")",
                    kDriverNotFound);
    RaiseDiagnostic(SQL_HANDLE_DBC, connection_.get(), "SQLDriverConnect", result);
}

Session::~Session() {
    SQLDisconnect(connection_.get());
}

std::string Session::Told(SQLUSMALLINT what) const {
    SQLWCHAR text[64] = {};
    SQLSMALLINT length = 0;
    SQLGetInfoW(connection_.get(), what, text, sizeof text, &length);
    return common::ToNarrow(text);
}

bool Session::WideText() {
    if (!wideText_) {
        common::Handle<SQLHANDLE, FreeStatement> types(
            Allocate(SQL_HANDLE_STMT, SQL_HANDLE_DBC, connection_.get()));
        wideText_ =
            SQL_SUCCEEDED(SQLGetTypeInfoW(types.get(), SQL_WVARCHAR)) && SQL_SUCCEEDED(SQLFetch(types.get()));
    }
    return *wideText_;
}

bool Session::Utf8Results() {
    if (!utf8Results_) {
        utf8Results_ = false;
        common::Handle<SQLHANDLE, FreeStatement> asked(
            Allocate(SQL_HANDLE_STMT, SQL_HANDLE_DBC, connection_.get()));
        std::wstring sql = L"SELECT @@character_set_results";
        char name[64] = {};
        SQLLEN length = 0;
        if (SQL_SUCCEEDED(SQLExecDirectW(asked.get(), sql.data(), SQL_NTS)) &&
            SQL_SUCCEEDED(SQLFetch(asked.get())) &&
            SQL_SUCCEEDED(SQLGetData(asked.get(), 1, SQL_C_CHAR, name, sizeof name, &length)))
            utf8Results_ = WideText() && std::string_view(name).starts_with("utf8");
    }
    return *utf8Results_;
}

bool Session::ParameterArrays() {
    if (!parameterArrays_) {
        common::Handle<SQLHANDLE, FreeStatement> probe(
            Allocate(SQL_HANDLE_STMT, SQL_HANDLE_DBC, connection_.get()));
        // Only MariaDB takes an array as a whole. To MySQL it goes set by set, and when the connection
        // breaks, the set under way is called one that arrived. Of MariaDB's drivers, 3.2.9 puts text beyond
        // ASCII as UTF-8 into columns of any character set, and hangs in the next call after an array that
        // was refused.
        SQLULEN size = 0;
        parameterArrays_ =
            Told(SQL_DBMS_NAME) == "MariaDB" && Told(SQL_DRIVER_VER).starts_with("03.01.") &&
            SQL_SUCCEEDED(SQLSetStmtAttrW(probe.get(), SQL_ATTR_PARAMSET_SIZE, Number(2), SQL_IS_UINTEGER)) &&
            SQL_SUCCEEDED(
                SQLGetStmtAttrW(probe.get(), SQL_ATTR_PARAMSET_SIZE, &size, SQL_IS_UINTEGER, nullptr)) &&
            size == 2;
    }
    return *parameterArrays_;
}

std::size_t Session::PacketSize() {
    if (!packetSize_) {
        packetSize_ = 1024 * 1024;
        common::Handle<SQLHANDLE, FreeStatement> asked(
            Allocate(SQL_HANDLE_STMT, SQL_HANDLE_DBC, connection_.get()));
        std::wstring sql = L"SELECT @@max_allowed_packet";
        SQLBIGINT size = 0;
        SQLLEN indicator = 0;
        if (SQL_SUCCEEDED(SQLExecDirectW(asked.get(), sql.data(), SQL_NTS)) &&
            SQL_SUCCEEDED(SQLFetch(asked.get())) &&
            SQL_SUCCEEDED(SQLGetData(asked.get(), 1, SQL_C_SBIGINT, &size, sizeof size, &indicator)) &&
            size > 0)
            packetSize_ = static_cast<std::size_t>(size);
    }
    return *packetSize_;
}

std::string Session::ToPrepare(std::string sql) {
    // MariaDB's driver 3.2 keeps what it has prepared, and the columns that it had: those of a table that has
    // since been made anew. A remark makes each text another one.
    if (!keepsStatements_)
        keepsStatements_ = Told(SQL_DRIVER_VER).starts_with("03.02.");
    if (*keepsStatements_)
        sql.insert(sql.ends_with(';') ? sql.size() - 1 : sql.size(),
                   " /*" + std::to_string(++prepared_) + "*/");
    return sql;
}

Statement::Statement(SessionPtr session)
    : session_(std::move(session)), handle_(Allocate(SQL_HANDLE_STMT, SQL_HANDLE_DBC, session_->Get())) {}

Statement::~Statement() {
    const SessionUse use(session_);
    handle_.reset();
}

void Statement::Check(SQLRETURN result, const char* name) const {
    if (!HasSucceeded(result))
        Fail(result, name);
}

void Statement::Fail(SQLRETURN result, const char* name) const {
    RaiseDiagnostic(SQL_HANDLE_STMT, Get(), name, result);
}

void Statement::ExecuteDirect(const std::string& sql, TextForm form) {
    std::wstring wide = form == TextForm::Utf8 ? common::FromUtf8(sql) : common::ToWide(sql);
    Check(SQLExecDirectW(Get(), wide.data(), static_cast<SQLINTEGER>(wide.size())), "SQLExecDirect");
}

void Statement::Prepare(const std::string& sql) {
    std::wstring wide = common::ToWide(session_->ToPrepare(sql));
    Check(SQLPrepareW(Get(), wide.data(), static_cast<SQLINTEGER>(wide.size())), "SQLPrepare");
}

void Statement::Execute() {
    Check(TryExecute(), "SQLExecute");
}

SQLRETURN Statement::TryExecute() {
    return SQLExecute(Get());
}

bool Statement::Fetch() {
    const SQLRETURN result = SQLFetch(Get());
    Check(result, "SQLFetch");
    return result != SQL_NO_DATA;
}

bool Statement::Set(SQLINTEGER attribute, SQLULEN value) {
    SQLULEN taken = 0;
    return SQL_SUCCEEDED(SQLSetStmtAttrW(Get(), attribute, Number(value), SQL_IS_UINTEGER)) &&
           SQL_SUCCEEDED(SQLGetStmtAttrW(Get(), attribute, &taken, SQL_IS_UINTEGER, nullptr)) &&
           taken == value;
}

void Statement::SetPointer(SQLINTEGER attribute, SQLPOINTER pointer) {
    SQLSetStmtAttrW(Get(), attribute, pointer, SQL_IS_POINTER);
}

SQLSMALLINT Statement::ColumnCount() const {
    SQLSMALLINT count = 0;
    Check(SQLNumResultCols(Get(), &count), "SQLNumResultCols");
    return count;
}

std::int64_t Statement::RowCount() const {
    SQLLEN count = 0;
    Check(SQLRowCount(Get(), &count), "SQLRowCount");
    return count;
}

} // namespace database::odbc
