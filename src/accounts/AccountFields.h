#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>

namespace accounts {

/// The columns of an account that the tool reads and writes, in the order in which they are written.
enum class Field : std::size_t { Id, Name, Password, Sex, Email };
inline constexpr std::array kFields{Field::Id, Field::Name, Field::Password, Field::Sex, Field::Email};

/// What the columns of one account hold, as text; none where it is not known. By Field.
using FieldTexts = std::array<std::optional<std::string>, kFields.size()>;

constexpr std::size_t Index(Field field) {
    return static_cast<std::size_t>(field);
}

/// "Password" and so on, as the operator reads it.
const char* FieldName(Field field);

/// What a field holds as the operator reads it: the sex is a word.
std::string FieldText(Field field, const std::string& text);

/// What the operator typed for an account.
struct AccountFields {
    std::string name;
    std::string id;
    std::string password;
    std::string email;

    bool operator==(const AccountFields&) const = default;
};

} // namespace accounts
