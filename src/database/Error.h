#pragma once

#include "common/RuntimeError.h"

#include <string>

namespace database {

// The numbers of errors that are the record set's own, as operators know them from other tools.
inline constexpr long kNoCurrentRecord = 3021;
inline constexpr long kReadOnly = 3251;
inline constexpr long kItemNotFound = 3265;
inline constexpr long kObjectClosed = 3704;
/// Somebody else's request is still out on the connection.
inline constexpr long kStillExecuting = 3711;
inline constexpr long kCancelled = 3712;
/// A server, or what stands between, was silent for too long.
inline constexpr long kNoAnswer = -2147217871;
/// A row to change is not there any more, or is not what it was when it was read.
inline constexpr long kRowChanged = -2147217864;
/// An error without a number of its own: the driver is missing, a connection string is wrong.
inline constexpr long kDriverError = -2147467259;

/// An error of server, driver or driver manager. Number() is the server's own number (1045 is a refused
/// login), kDriverError where there is none; Description() the text without its bracketed senders.
class Error : public RuntimeError {
public:
    Error(long number, const std::string& description, std::string sqlState = {})
        : RuntimeError(number, description), sqlState_(std::move(sqlState)) {}

    /// The five characters of the error's class, empty when the error is the record set's own.
    const std::string& SqlState() const { return sqlState_; }

    /// True when the connection is gone: nothing that is tried on it can succeed.
    bool ConnectionLost() const;
    /// True when there is no driver by the connection string's name, or none of this program's kind.
    bool DriverMissing() const;
    /// True when the wait was given up: the server may still do what it was asked for.
    bool Unanswered() const { return Number() == kNoAnswer || Number() == kCancelled; }

private:
    std::string sqlState_;
};

/// Raises the error of a record set's own with the number's text, and `detail` behind it.
[[noreturn]] void Raise(long number, const std::string& detail = {});

} // namespace database
