#pragma once

#include <string>
#include <vector>

namespace database {

/// An ODBC driver that is installed for programs of this kind (32-bit or 64-bit).
struct Driver {
    std::string name;
    /// The path of its library, "" when the system does not tell.
    std::string library;
};

/// All of them; none where the system does not tell.
std::vector<Driver> InstalledDrivers();

} // namespace database
