#pragma once

#include "servers/Databases.h"

#include <string>
#include <string_view>

/// The statements that make the suite's databases and tables where they are missing. They go to the server as
/// they stand, every blank included.
namespace dbsetup {

std::string CreateStatement(const suite::Database& database);

/// `table` is one of the suite's.
std::string CreateStatement(const suite::Table& table);

/// A create statement for servers of today, which know the storage engine's clause by its later name only.
std::string EngineForm(std::string_view createStatement);

} // namespace dbsetup
