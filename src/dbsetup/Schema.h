#pragma once

#include <span>
#include <string>
#include <string_view>

/// The three databases of the server suite and their ten tables. The statements go to the server as they
/// stand, every blank included.
namespace dbsetup {

struct Table {
    std::string_view name;
    /// As the set-up wizard lists it when it is missing, with the blank behind it.
    std::string_view displayName;
    /// The statement that makes the table when it is missing, in pieces that follow each other directly.
    std::span<const std::string_view> pieces;

    std::string CreateStatement() const;
};

struct Database {
    std::string_view name;
    std::string_view createStatement;
    /// In the order in which they are checked and made.
    std::span<const Table> tables;
    /// Positions in `tables` in the order in which missing ones are listed.
    std::span<const std::size_t> displayOrder;
};

/// glogin, amcharacter, amglobal.
std::span<const Database> Databases();

/// A create statement for servers of today, which know the storage engine's clause by its later name only.
std::string EngineForm(std::string_view createStatement);

} // namespace dbsetup
