#pragma once

#include "settings/clsINI.h"

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

/// What the server suite keeps: its three databases with their ten tables, and the keys of Kerno.ini.
namespace suite {

struct Table {
    std::string_view name;
    /// As the set-up wizard lists it when it is missing, with the blank behind it.
    std::string_view displayName;
};

struct Database {
    std::string_view name;
    /// The keys of Kerno.ini that hold the login by which the servers use it.
    std::string_view userKey;
    std::string_view passwordKey;
    /// In the order in which they are checked and made.
    std::span<const Table> tables;
    /// Positions in `tables` in the order in which missing ones are listed.
    std::span<const std::size_t> displayOrder;
    /// Positions in `tables` in the order in which their files are copied.
    std::span<const std::size_t> copyOrder;
};

/// glogin, amcharacter, amglobal.
std::span<const Database> Databases();

/// The one that holds the accounts.
inline const Database& LoginDatabase() {
    return Databases()[0];
}

/// What a MyISAM table consists of, in the order in which the files are copied: its layout, its indexes, its
/// rows.
inline constexpr std::string_view kTableFileEndings[] = {".frm", ".MYI", ".MYD"};

/// The name that the servers' own MySQL has here.
inline constexpr const char* kThisComputer = "localhost";

/// The name and password by which a server of the suite logs in to a database.
struct Login {
    std::string user;
    std::string password;
};

/// The login of `database` as Kerno.ini holds it, which is where the servers read it. Raises the file error.
Login ReadLogin(const clsINI& kerno, const Database& database);

} // namespace suite
