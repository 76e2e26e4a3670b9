#include "database/Error.h"

#include <algorithm>
#include <array>

namespace database {

bool Error::ConnectionLost() const {
    // Shutdown in progress, killed by an administrator, gone away, lost during a query, lost at reading.
    constexpr std::array<long, 6> kNumbers{1053, 1927, 2002, 2006, 2013, 2055};
    return Unanswered() || sqlState_.starts_with("08") ||
           std::ranges::find(kNumbers, Number()) != kNumbers.end();
}

bool Error::DriverMissing() const {
    // unixODBC has the state of a general warning for a library that cannot be loaded.
    return Number() == kDriverError && (sqlState_.starts_with("IM0") || sqlState_ == "01000");
}

namespace {

const char* OwnText(long number) {
    switch (number) {
    case kNoCurrentRecord:
        return "Either BOF or EOF is True, or the current record has been deleted. The requested operation "
               "requires a current record.";
    case kReadOnly:
        return "The rows do not come from one single table and cannot be changed.";
    case kItemNotFound:
        return "Item cannot be found in the collection corresponding to the requested name or ordinal.";
    case kObjectClosed:
        return "Operation is not allowed when the object is closed.";
    case kStillExecuting:
        return "The connection is still busy with another request.";
    case kCancelled:
        return "Operation has been cancelled by the user.";
    case kRowChanged:
        return "Row cannot be located for updating. Some values may have been changed since it was last "
               "read.";
    default:
        return "The driver reports an error without saying which.";
    }
}

} // namespace

void Raise(long number, const std::string& detail) {
    throw Error(number, OwnText(number) + detail);
}

} // namespace database
