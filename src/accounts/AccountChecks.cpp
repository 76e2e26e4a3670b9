#include "accounts/AccountChecks.h"

#include "common/Text.h"

#include <charconv>
#include <limits>

namespace accounts {

namespace {

std::string TooLong(const char* field, const std::string& text, std::size_t longest) {
    const std::size_t length = common::ToWide(text).size();
    if (length <= longest)
        return {};
    return std::string("The ") + field + " has " + std::to_string(length) +
           " characters. Please shorten it to " + std::to_string(longest);
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

std::size_t WidthOf(const std::string& columnType) {
    const std::size_t bracket = columnType.find('(');
    std::size_t width = 0;
    const char* end = columnType.data() + columnType.size();
    if (bracket == std::string::npos ||
        std::from_chars(columnType.data() + bracket + 1, end, width).ec != std::errc())
        return std::numeric_limits<std::size_t>::max();
    return width;
}

std::string Refusal(const AccountFields& fields, const AccountFields& stored, const Widths& widths,
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
        std::size_t longest;
    } texts[] = {{"account name", &AccountFields::name, widths.name},
                 {"password", &AccountFields::password, widths.password},
                 {"e-mail address", &AccountFields::email, widths.email}};
    for (const auto& each : texts) {
        const std::string& text = fields.*each.text;
        if (std::string message = TooLong(each.label, text, each.longest);
            !message.empty() && text != stored.*each.text)
            return message;
    }
    return {};
}

} // namespace accounts
