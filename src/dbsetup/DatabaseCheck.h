#pragma once

#include "dbsetup/SetUpServer.h"

namespace dbsetup {

/// What the check tells of a database's presence.
std::string PresenceText(bool exists);

/// What it tells of the tables of a database that does not exist.
std::string NoTablesText(const suite::Database& database);

/// What it tells of the tables of one that does; `existing` may name others beside ours.
std::string TablesText(const suite::Database& database, const NameSet& existing);

} // namespace dbsetup
