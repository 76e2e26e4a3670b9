#pragma once

#include "database/Drivers.h"

#include <string>
#include <vector>

/// What a server is, and what of the tool's work it takes.
namespace dbsetup {

struct ServerFacts {
    /// What VERSION() returns, such as "10.11.6-MariaDB-0+deb12u1".
    std::string version;
    /// @@version_comment: who has made it.
    std::string comment;
    std::string sqlMode;
};

bool IsMariaDB(const ServerFacts& facts);
/// True where tables can be made with the clause TYPE=MyISAM.
bool TakesTypeClause(const ServerFacts& facts);
/// True where GRANT ... IDENTIFIED BY makes logins.
bool GrantsMakeLogins(const ServerFacts& facts);
/// True where a table of files is complete without anything that the server keeps elsewhere.
bool FilesAreWholeTables(const ServerFacts& facts);

/// The card that the wizard shows: product, version and mode, then a line for each of the three with what is
/// to be done where it is a no.
std::string ServerCard(const ServerFacts& facts);

/// What the card says instead when the server wants a name and a password (error 1045).
std::string WantsNameCard();

/// What it says when the driver by its classic name is missing: the drivers that there are, and the
/// registry's lines that give one of them that name.
std::string NoDriverCard(const std::vector<database::Driver>& drivers);

/// The thousands apart: 1204 is "1,204".
std::string Grouped(long long number);

} // namespace dbsetup
