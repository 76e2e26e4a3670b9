#include "database/Value.h"

#include "common/RuntimeError.h"

#include <charconv>
#include <cmath>

namespace database {

namespace {

std::int64_t Parse(std::string_view text) {
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error == std::errc::result_out_of_range)
        throw RuntimeError(common::kOverflow);
    if (error != std::errc() || end != text.data() + text.size())
        throw RuntimeError(common::kTypeMismatch);
    return number;
}

/// The text or bytes of a value that is neither null nor a number.
const std::string& Characters(const Value::Held& held) {
    const auto* bytes = std::get_if<Bytes>(&held);
    return bytes ? bytes->data : std::get<std::string>(held);
}

} // namespace

std::string Value::AsText() const {
    if (IsNull())
        return {};
    if (const auto* whole = std::get_if<std::int64_t>(&held_))
        return std::to_string(*whole);
    if (const auto* real = std::get_if<double>(&held_)) {
        char text[32];
        return std::string(text, std::to_chars(text, text + sizeof text, *real).ptr);
    }
    return Characters(held_);
}

std::int64_t Value::AsInteger() const {
    if (IsNull())
        return 0;
    if (const auto* whole = std::get_if<std::int64_t>(&held_))
        return *whole;
    if (const auto* real = std::get_if<double>(&held_)) {
        const double rounded = std::nearbyint(*real);
        if (!(std::abs(rounded) < 0x1p63))
            throw RuntimeError(common::kOverflow);
        return static_cast<std::int64_t>(rounded);
    }
    return Parse(Characters(held_));
}

} // namespace database
