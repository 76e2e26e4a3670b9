#pragma once

#include "servers/Databases.h"
#include "support/TempFolder.h"

#include <string>
#include <string_view>

// Table files that tell a copy that was cut short or mixed: every byte behind the headers says the
// generation.
inline constexpr std::size_t kDataBytes = 30'000;

inline std::string FileOf(std::string_view ending, char generation) {
    if (ending == ".frm")
        return "\xFE\x01" + std::string(100, generation);
    if (ending == ".MYD")
        return std::string(kDataBytes, generation);
    std::string index(2048, generation);
    index.replace(0, 8, "\xFE\xFE\x07\x01\x00\x03\x01\xBD", 8);
    index.replace(24, 52, std::string(52, '\0'));
    index[66] = 8;
    index[74] = static_cast<char>(kDataBytes >> 8);
    index[75] = static_cast<char>(kDataBytes & 0xFF);
    return index;
}

/// Calls `visit` with the path below a backup or a data folder, and the ending, of every file.
inline void ForEachFile(const auto& visit) {
    for (const suite::Database& database : suite::Databases())
        for (const suite::Table& table : database.tables)
            for (const std::string_view ending : suite::kTableFileEndings)
                visit("\\" + std::string(database.name) + "\\" + std::string(table.name) +
                          std::string(ending),
                      ending);
}

/// All of them, below the folder of a MySQL.
inline void WriteTables(const std::string& mySQL, char generation) {
    ForEachFile([&](const std::string& path, std::string_view ending) {
        support::WriteFile(mySQL + "\\data" + path, FileOf(ending, generation));
    });
}
