#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace supervision {

/// What the beginning of a MyISAM index file says of the table.
struct TableState {
    std::uint64_t rows = 0;
    std::uint64_t indexBytes = 0; ///< that the index file has when it is whole
    std::uint64_t dataBytes = 0;  ///< that the data file has when it is whole
    bool crashed = false;         ///< the server has marked the table as damaged
    bool delayedKeys = false; ///< the server writes the index late, at the latest when it closes the table
};

/// The bytes from the start of the file that ReadTableState looks at.
inline constexpr std::size_t kTableStateBytes = 76;

/// Nothing when it is not the beginning of a MyISAM index file.
std::optional<TableState> ReadTableState(std::string_view start);

/// What is known of the copy of a table.
enum class Verdict {
    Proven,     ///< the same as the table after it was copied, and whole by what its index file says
    Changed,    ///< the server wrote to the table meanwhile
    Unreadable, ///< the table itself is damaged
};

struct TableVerdict {
    Verdict verdict = Verdict::Unreadable;
    std::uint64_t rows = 0;
    std::string reason; ///< of a verdict that is not Proven; "" otherwise
};

/// What is looked at for a verdict.
struct TableEvidence {
    std::string layoutStart; ///< the first bytes of the copied layout file
    std::string indexStart;  ///< of the copied index file
    std::uint64_t indexBytes = 0;
    std::uint64_t dataBytes = 0;
    bool same = true; ///< all three copies are what the table's files were when read again
};

TableVerdict VerdictOn(const TableEvidence& evidence);

} // namespace supervision
