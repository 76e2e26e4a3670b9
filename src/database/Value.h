#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

namespace database {

/// Raw bytes, which no code page touches.
struct Bytes {
    std::string data;
    bool operator==(const Bytes&) const = default;
};

/// What a field holds. Whole numbers are 64-bit; what fits neither that nor a double exactly (decimals,
/// unsigned 64-bit numbers, dates and times) is text in the server's form.
class Value {
public:
    Value() = default;
    Value(std::int64_t number) : held_(number) {}
    Value(int number) : held_(std::int64_t{number}) {}
    Value(long number) : held_(std::int64_t{number}) {}
    Value(double number) : held_(number) {}
    Value(std::string text) : held_(std::move(text)) {}
    Value(std::string_view text) : held_(std::string(text)) {}
    Value(const char* text) : held_(std::string(text)) {}
    Value(Bytes bytes) : held_(std::move(bytes)) {}

    bool IsNull() const { return std::holds_alternative<std::monostate>(held_); }

    /// The value as text; bytes as they are, "" for null.
    std::string AsText() const;

    /// The value as a whole number, reals rounded to even, 0 for null. Raises 13 (type mismatch) for text
    /// that is no number, 6 (overflow) past 64 bits.
    std::int64_t AsInteger() const;

    /// True when both are of the same type and equal.
    bool operator==(const Value&) const = default;

    using Held = std::variant<std::monostate, std::int64_t, double, std::string, Bytes>;
    const Held& Get() const { return held_; }

private:
    Held held_;
};

} // namespace database
