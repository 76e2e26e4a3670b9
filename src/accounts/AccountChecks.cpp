#include "accounts/AccountChecks.h"

#include "common/Text.h"

#include <charconv>

namespace accounts {

namespace {

/// The server cuts longer text without a word, and the player could never log in.
constexpr std::size_t kLongestText = 24;

std::string TooLong(const char* field, const std::string& text) {
    const std::size_t length = common::ToWide(text).size();
    if (length <= kLongestText)
        return {};
    return std::string("The ") + field + " has " + std::to_string(length) +
           " characters. Please shorten it to " + std::to_string(kLongestText);
}

} // namespace

std::optional<std::int32_t> AccountNumber(const std::string& text) {
    const std::string digits = common::Trim(text);
    std::int32_t number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (error != std::errc() || end != digits.data() + digits.size() || number < 1)
        return std::nullopt;
    return number;
}

std::string Refusal(const AccountFields& fields, const AccountFields& stored,
                    const std::function<bool(const std::string&)>& nameTaken,
                    const std::function<bool(std::int32_t)>& idTaken) {
    if (common::Trim(fields.name).empty())
        return "There is no account name specified. It is a compulsory field for an account";
    if (common::Trim(fields.id).empty())
        return "There is no ID specified. It is a compulsory field for an account";
    if (nameTaken(fields.name))
        return "Account Name is already taken";
    const auto id = AccountNumber(fields.id);
    if (id && idTaken(*id))
        return "Account ID is already taken";
    if (!id && common::Trim(fields.id) != stored.id)
        return "The ID '" + fields.id +
               "' is no account number. Please enter a whole number from 1 to 2147483647, or press Autofill";
    const struct {
        const char* label;
        std::string AccountFields::*text;
    } texts[] = {{"account name", &AccountFields::name},
                 {"password", &AccountFields::password},
                 {"e-mail address", &AccountFields::email}};
    for (const auto& each : texts) {
        const std::string& text = fields.*each.text;
        if (std::string message = TooLong(each.label, text); !message.empty() && text != stored.*each.text)
            return message;
    }
    return {};
}

} // namespace accounts
