#pragma once

#include <stdexcept>
#include <string>

namespace common {

// The classic numbers; an operator's forum posts and our log lines quote them.
inline constexpr long kInvalidProcedureCall = 5;
inline constexpr long kOverflow = 6;
inline constexpr long kOutOfMemory = 7;
inline constexpr long kSubscriptOutOfRange = 9;
inline constexpr long kDivisionByZero = 11;
inline constexpr long kTypeMismatch = 13;
inline constexpr long kInternalError = 51;
inline constexpr long kFileNotFound = 53;
inline constexpr long kDiskFull = 61;
inline constexpr long kInputPastEnd = 62;
inline constexpr long kDeviceUnavailable = 68;
inline constexpr long kPermissionDenied = 70;
inline constexpr long kDiskNotReady = 71;
inline constexpr long kPathFileAccess = 75;
inline constexpr long kPathNotFound = 76;
inline constexpr long kObjectNotSet = 91;

/// A failure that ends the operation it happens in. It is caught by an operation that by convention returns
/// its default or can do without what failed, and at a form's event boundary.
class RuntimeError : public std::runtime_error {
public:
    RuntimeError(long number, const std::string& description)
        : std::runtime_error(description), number_(number) {}

    /// An error with the number's own text.
    explicit RuntimeError(long number);

    long Number() const { return number_; }
    std::string Description() const { return what(); }

private:
    long number_;
};

/// The text that belongs to a classic number, "Application-defined or object-defined error" for the others.
std::string ErrorText(long number);

/// Our words, the system's number and words, and the file: "Permission denied (32: ...): path". `code`: the
/// system's error (GetLastError).
std::string FileErrorText(unsigned long code, const std::string& path);

/// Raises the RuntimeError that stands for the system's error `code` on the file `path`, with FileErrorText.
[[noreturn]] void RaiseFileError(unsigned long code, const std::string& path);

} // namespace common

using common::RuntimeError;
