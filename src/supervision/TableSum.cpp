#include "supervision/TableSum.h"

#include "common/Numbers.h"

#include <cstring>

namespace supervision {

namespace {

/// Spreads a change of any bit over all of them.
std::uint64_t Mixed(std::uint64_t bits) {
    bits = (bits ^ bits >> 32) * 0xD6E8FEB86659FD93;
    bits = (bits ^ bits >> 32) * 0xD6E8FEB86659FD93;
    return bits ^ bits >> 32;
}

std::uint64_t Hash(std::uint64_t start, std::string_view bytes) {
    std::uint64_t hash = start ^ bytes.size();
    while (!bytes.empty()) {
        std::uint64_t word = 0;
        const std::size_t size = std::min(bytes.size(), sizeof word);
        std::memcpy(&word, bytes.data(), size);
        hash = (hash ^ word) * 0x9E3779B97F4A7C15;
        hash ^= hash >> 29;
        bytes.remove_prefix(size);
    }
    return Mixed(hash);
}

std::uint64_t Hash(std::uint64_t start, const database::Cell& cell) {
    // A null is not an empty text, and the kinds of a column are the same on both sides.
    const std::uint64_t next = Mixed(start + 1 + static_cast<std::uint64_t>(cell.kind));
    if (cell.HasCharacters())
        return Hash(next, cell.Characters());
    return Mixed(next ^ static_cast<std::uint64_t>(cell.integer));
}

} // namespace

void TableSum::Add(const database::RowStore& block) {
    for (std::size_t row = 0; row < block.Rows(); ++row) {
        std::uint64_t hash = 0;
        for (std::size_t column = 0; column < block.Columns(); ++column)
            hash = Hash(hash, block.At(row, column));
        // A sum and no exclusive or: two equal rows must not cancel each other out.
        sum += hash;
    }
    rows += block.Rows();
}

std::string Differences(const TableSums& source, const TableSums& destination) {
    std::string text;
    const auto tell = [&](const std::string& table, const std::string& what) {
        text += (text.empty() ? "" : ", ") + table + " (" + what + ")";
    };
    for (const auto& [table, here] : source) {
        const auto there = destination.find(table);
        if (there == destination.end())
            tell(table, "missing");
        else if (there->second.rows != here.rows)
            tell(table,
                 common::CountText(there->second.rows) + " of " + common::CountText(here.rows) + " rows");
        else if (there->second != here)
            tell(table, "other values");
    }
    for (const auto& [table, there] : destination)
        if (!source.contains(table))
            tell(table, "not in the source");
    return text;
}

} // namespace supervision
