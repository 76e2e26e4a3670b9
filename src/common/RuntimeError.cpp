#include "common/RuntimeError.h"

#include <windows.h>

#include <string_view>

namespace common {

RuntimeError::RuntimeError(long number) : RuntimeError(number, ErrorText(number)) {}

std::string ErrorText(long number) {
    switch (number) {
    case kInvalidProcedureCall:
        return "Invalid procedure call or argument";
    case kOverflow:
        return "Overflow";
    case kOutOfMemory:
        return "Out of memory";
    case kSubscriptOutOfRange:
        return "Subscript out of range";
    case kDivisionByZero:
        return "Division by zero";
    case kTypeMismatch:
        return "Type mismatch";
    case kFileNotFound:
        return "File not found";
    case kDiskFull:
        return "Disk full";
    case kInputPastEnd:
        return "Input past end of file";
    case kDeviceUnavailable:
        return "Device unavailable";
    case kPermissionDenied:
        return "Permission denied";
    case kDiskNotReady:
        return "Disk not ready";
    case kPathFileAccess:
        return "Path/File access error";
    case kPathNotFound:
        return "Path not found";
    default:
        return "Application-defined or object-defined error";
    }
}

namespace {

long NumberOfSystemError(unsigned long code) {
    switch (code) {
    case ERROR_FILE_NOT_FOUND:
        return kFileNotFound;
    case ERROR_PATH_NOT_FOUND:
    case ERROR_BAD_PATHNAME:
        return kPathNotFound;
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
    case ERROR_WRITE_PROTECT:
        return kPermissionDenied;
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
        return kDiskFull;
    case ERROR_NOT_READY:
        return kDiskNotReady;
    case ERROR_INVALID_DRIVE:
    case ERROR_DEV_NOT_EXIST:
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_NET_NAME:
        return kDeviceUnavailable;
    default:
        return kPathFileAccess;
    }
}

/// The system's words for its error, without the full stop and the line end that it adds; "" when it has
/// none.
std::string SystemText(unsigned long code) {
    char text[300] = "";
    const DWORD length = FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS |
                                            FORMAT_MESSAGE_MAX_WIDTH_MASK,
                                        nullptr, code, 0, text, sizeof text, nullptr);
    std::string_view words(text, length);
    while (!words.empty() && (words.back() == ' ' || words.back() == '.'))
        words.remove_suffix(1);
    return std::string(words);
}

} // namespace

std::string FileErrorText(unsigned long code, const std::string& path) {
    const std::string words = SystemText(code);
    return ErrorText(NumberOfSystemError(code)) + " (" + std::to_string(code) + (words.empty() ? "" : ": ") +
           words + "): " + path;
}

void RaiseFileError(unsigned long code, const std::string& path) {
    throw RuntimeError(NumberOfSystemError(code), FileErrorText(code, path));
}

} // namespace common
