#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace accounts {

/// What stands in the editor's fields of an account.
struct AccountFields {
    std::string name;
    std::string id;
    std::string password;
    std::string email;
};

/// The account number that was typed: digits only, from 1 to 2147483647; none for anything else.
std::optional<std::int32_t> AccountNumber(const std::string& text);

/// Why an account cannot be kept with these fields, as a message for the operator; "" when it can. `stored`
/// are the fields as the server has them, empty for a new account: however odd, they may stay. The two
/// procedures answer whether another account has the name or number.
std::string Refusal(const AccountFields& fields, const AccountFields& stored,
                    const std::function<bool(const std::string&)>& nameTaken,
                    const std::function<bool(std::int32_t)>& idTaken);

} // namespace accounts
