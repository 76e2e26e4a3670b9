#pragma once

#include "database/RowStore.h"

#include <string>

namespace database {

/// A column of a result.
struct Column {
    std::string name;
    /// The database and table that it comes from and its name there; empty for what was worked out.
    std::string baseDatabase;
    std::string baseTable;
    std::string baseName;
    /// What the fields are when they are not null.
    Cell::Kind kind = Cell::Kind::Text;
    /// The server numbers new rows itself when they leave this column out.
    bool autoNumber = false;
};

} // namespace database
