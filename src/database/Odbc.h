#pragma once

#include "common/Handle.h"
#include "database/RowReader.h"

#include <windows.h>

#include <sql.h>
#include <sqlext.h>

#include <mutex>
#include <optional>
#include <string>

/// The border to ODBC. Text crosses it in UTF-16, by the wide entry points only: the ANSI ones of a driver
/// manager are optional, and Wine's lacks most of them.
namespace database::odbc {

/// SQL_NO_DATA is what a statement returns that was to change rows and met none: no failure.
inline bool HasSucceeded(SQLRETURN result) {
    return SQL_SUCCEEDED(result) || result == SQL_NO_DATA;
}

inline void FreeEnvironment(SQLHANDLE handle) {
    SQLFreeHandle(SQL_HANDLE_ENV, handle);
}
inline void FreeConnection(SQLHANDLE handle) {
    SQLFreeHandle(SQL_HANDLE_DBC, handle);
}
inline void FreeStatement(SQLHANDLE handle) {
    SQLFreeHandle(SQL_HANDLE_STMT, handle);
}

/// A login on a server, and what its driver can do.
class Session {
public:
    /// Raises Error.
    Session(const std::string& connectionString, unsigned loginSeconds);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    SQLHDBC Get() const { return connection_.get(); }
    /// Held by SessionUse.
    std::recursive_mutex& InUse() { return inUse_; }

    /// True when the driver speaks UTF-16. The others (MySQL ODBC 3.51 and older) hand through the bytes of
    /// the server's connection character set, which is the ANSI code page's in a usual installation.
    bool WideText();
    /// True when text reaches this side in UTF-8 if asked for as bytes.
    bool Utf8Results();
    /// False when the driver sends one set of parameters for each execution only.
    bool ParameterArrays();
    void DeclineParameterArrays() { parameterArrays_ = false; }
    /// Bytes that a statement with its parameters may have.
    std::size_t PacketSize();
    /// The statement as it is to be prepared, so that the driver does not take it for one from before.
    std::string ToPrepare(std::string sql);

private:
    /// What the driver says of itself or of the server.
    std::string Told(SQLUSMALLINT what) const;

    std::recursive_mutex inUse_;
    common::Handle<SQLHANDLE, FreeEnvironment> environment_;
    common::Handle<SQLHANDLE, FreeConnection> connection_;
    std::optional<bool> wideText_;
    std::optional<bool> utf8Results_;
    std::optional<bool> parameterArrays_;
    std::optional<std::size_t> packetSize_;
    std::optional<bool> keepsStatements_;
    unsigned prepared_ = 0;
};

/// A statement; keeps its session alive.
class Statement {
public:
    explicit Statement(SessionPtr session);
    ~Statement();
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;

    SQLHSTMT Get() const { return handle_.get(); }
    Session& Owner() const { return *session_; }

    void ExecuteDirect(const std::string& sql, TextForm form = TextForm::Ansi);
    void Prepare(const std::string& sql);
    void Execute();
    /// As Execute, but with what the call returned in the place of an error.
    SQLRETURN TryExecute();
    /// False at the end of the rows.
    bool Fetch();
    /// Raises the Error of the call `name` when `result` says that it failed.
    void Check(SQLRETURN result, const char* name) const;
    /// Raises the Error that the call `name` left behind.
    [[noreturn]] void Fail(SQLRETURN result, const char* name) const;

    /// Sets a whole-number attribute; false when the driver did not take the value as it is.
    bool Set(SQLINTEGER attribute, SQLULEN value);
    void SetPointer(SQLINTEGER attribute, SQLPOINTER pointer);

    SQLSMALLINT ColumnCount() const;
    std::int64_t RowCount() const;

private:
    SessionPtr session_;
    common::Handle<SQLHANDLE, FreeStatement> handle_;
};

} // namespace database::odbc
