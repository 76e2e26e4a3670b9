#pragma once

#include "database/Value.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

namespace database {

/// A field in 16 bytes that borrows its characters from whoever made it.
struct Cell {
    enum class Kind : std::uint8_t { Null, Integer, Real, Text, Bytes };

    union {
        std::int64_t integer = 0;
        double real;
        const char* characters;
    };
    std::uint32_t length = 0;
    Kind kind = Kind::Null;
    /// Text that lost characters because the ANSI code page lacks them.
    bool lossy = false;

    static Cell Of(const Value& value);
    Value ToValue() const;
    bool HasCharacters() const { return kind >= Kind::Text; }
    std::string_view Characters() const { return {characters, length}; }
};

/// How text is held. The tool's own text is of the ANSI code page, which lacks most characters; text that
/// only passes through keeps all of them in UTF-8.
enum class TextForm { Ansi, Utf8 };

/// Rows in memory, one after the other: 16 bytes for a field, the characters packed into large pieces. Holds
/// a table of some hundred thousand rows, or a block of one that is passing through.
class RowStore {
public:
    /// An empty store for rows of so many fields.
    explicit RowStore(std::size_t columns = 0, TextForm form = TextForm::Ansi)
        : columns_(columns), form_(form) {}

    TextForm Form() const { return form_; }
    std::size_t Rows() const { return columns_ == 0 ? 0 : cells_.size() / columns_; }
    std::size_t Columns() const { return columns_; }
    const Cell& At(std::size_t row, std::size_t column) const { return cells_[row * columns_ + column]; }

    /// Makes room for so many rows, without which the fields move each time that they outgrow theirs.
    void Expect(std::size_t rows) { cells_.reserve(rows * columns_); }
    /// Puts the next field behind the last one, with a copy of its characters.
    void Append(Cell cell);
    /// As above for text in UTF-16, which becomes text of the store's form.
    void AppendWide(std::wstring_view text);
    /// The same for UTF-8.
    void AppendUtf8(std::string_view text);

    /// No rows, but the memory for as many again.
    void Clear();

private:
    char* Reserve(std::size_t size);

    struct Piece {
        std::unique_ptr<char[]> memory;
        std::size_t size;
    };
    std::size_t columns_;
    TextForm form_;
    std::vector<Cell> cells_;
    std::vector<Piece> pieces_;
    std::size_t piece_ = 0;
    std::size_t used_ = 0;
};

} // namespace database
