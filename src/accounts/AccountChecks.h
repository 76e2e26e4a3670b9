#pragma once

#include "accounts/AccountFields.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace accounts {

/// How many characters the server keeps of the typed texts; the server cuts longer text without a word, and
/// the player could never log in.
struct Widths {
    std::size_t name = 24;
    std::size_t password = 24;
    std::size_t email = 24;
};

/// The characters that fit into a column of a type as the server writes it ("varchar(24)"); a type
/// without a width holds as much as anybody types.
std::size_t WidthOf(const std::string& columnType);

/// The account number that was typed: digits only, from 1 to 2147483647; none for anything else.
std::optional<std::int32_t> AccountNumber(const std::string& text);

/// Why an account cannot be kept with these fields, as a message for the operator; "" when it can. `stored`
/// are the fields as the server has them, empty for a new account: however odd, they may stay. The two
/// procedures answer whether another account has the name or number.
std::string Refusal(const AccountFields& fields, const AccountFields& stored, const Widths& widths,
                    const std::function<bool(const std::string&)>& nameTaken,
                    const std::function<bool(std::int32_t)>& idTaken);

} // namespace accounts
