#include "database/RowStore.h"

#include "common/Text.h"

#include <cstring>

namespace database {

Cell Cell::Of(const Value& value) {
    Cell cell;
    const auto borrow = [&cell](const std::string& text, Kind kind) {
        cell.characters = text.data();
        cell.length = static_cast<std::uint32_t>(text.size());
        cell.kind = kind;
    };
    if (const auto* whole = std::get_if<std::int64_t>(&value.Get())) {
        cell.integer = *whole;
        cell.kind = Kind::Integer;
    } else if (const auto* real = std::get_if<double>(&value.Get())) {
        cell.real = *real;
        cell.kind = Kind::Real;
    } else if (const auto* text = std::get_if<std::string>(&value.Get())) {
        borrow(*text, Kind::Text);
    } else if (const auto* bytes = std::get_if<Bytes>(&value.Get())) {
        borrow(bytes->data, Kind::Bytes);
    }
    return cell;
}

Value Cell::ToValue() const {
    switch (kind) {
    case Kind::Integer:
        return integer;
    case Kind::Real:
        return real;
    case Kind::Text:
        return Characters();
    case Kind::Bytes:
        return Bytes{std::string(Characters())};
    case Kind::Null:
        break;
    }
    return {};
}

char* RowStore::Reserve(std::size_t size) {
    constexpr std::size_t kPiece = std::size_t{256} * 1024;
    while (piece_ < pieces_.size() && pieces_[piece_].size - used_ < size) {
        ++piece_;
        used_ = 0;
    }
    if (piece_ == pieces_.size()) {
        const std::size_t made = std::max(kPiece, size);
        pieces_.push_back({std::make_unique_for_overwrite<char[]>(made), made});
        used_ = 0;
    }
    char* place = pieces_[piece_].memory.get() + used_;
    used_ += size;
    return place;
}

void RowStore::Append(Cell cell) {
    if (cell.HasCharacters()) {
        char* place = Reserve(cell.length);
        std::memcpy(place, cell.characters, cell.length);
        cell.characters = place;
    }
    cells_.push_back(cell);
}

void RowStore::AppendWide(std::wstring_view text) {
    const std::string narrow = form_ == TextForm::Utf8 ? common::ToUtf8(text) : common::ToNarrow(text);
    Cell cell;
    cell.kind = Cell::Kind::Text;
    cell.characters = narrow.data();
    cell.length = static_cast<std::uint32_t>(narrow.size());
    cell.lossy = std::ranges::count(narrow, '?') > std::ranges::count(text, L'?');
    Append(cell);
}

void RowStore::AppendUtf8(std::string_view text) {
    // Nearly all text is plain ASCII, which is the same in both and costs no call of the system.
    if (form_ == TextForm::Utf8 || common::IsAscii(text)) {
        Cell cell;
        cell.kind = Cell::Kind::Text;
        cell.characters = text.data();
        cell.length = static_cast<std::uint32_t>(text.size());
        Append(cell);
        return;
    }
    AppendWide(common::FromUtf8(text));
}

void RowStore::Clear() {
    cells_.clear();
    piece_ = 0;
    used_ = 0;
}

} // namespace database
