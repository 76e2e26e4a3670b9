#include "dbsetup/LoginStatements.h"

#include "common/Text.h"

#include <algorithm>

namespace dbsetup {

namespace {

constexpr std::string_view kClause = "IDENTIFIED BY '";
constexpr std::string_view kMask = "***";
/// A shorter password stands in the words by accident as well, and every *** for it would tell where.
constexpr std::size_t kUnmistakable = 4;

/// As it stands between the quotes of a statement.
std::string Escaped(std::string_view text) {
    return common::ReplaceAll(common::ReplaceAll(text, "\\", "\\\\"), "'", "''");
}

std::string InQuotes(std::string_view text) {
    return "'" + Escaped(text) + "'";
}

std::string AllRightsOn(std::string_view database) {
    return "GRANT ALL PRIVILEGES ON " + std::string(database) + ".* TO ";
}

} // namespace

std::string GrantStatement(std::string_view database, std::string_view user, std::string_view password) {
    return AllRightsOn(database) + std::string(user) + "@localhost IDENTIFIED BY " + InQuotes(password) + ";";
}

std::vector<std::string> CreateUserStatements(std::string_view database, std::string_view user,
                                              std::string_view password, std::string_view plugin) {
    const std::string login = InQuotes(user) + "@'localhost'";
    const std::string how = plugin.empty() ? " IDENTIFIED" : " IDENTIFIED WITH " + std::string(plugin);
    const std::string identified = login + how + " BY " + InQuotes(password) + ";";
    // The first makes a login that is missing, the second gives one that was there its new password.
    return {"CREATE USER IF NOT EXISTS " + identified, "ALTER USER " + identified,
            AllRightsOn(database) + login + ";"};
}

std::string WithoutPassword(std::string_view words, std::string_view password) {
    if (password.empty())
        return std::string(words);
    const std::string escaped = Escaped(password);
    std::string text(words);
    // Servers quote some 80 characters of a statement, which may be the beginning of the password only.
    for (std::size_t at = text.find(kClause); at != std::string::npos; at = text.find(kClause, at)) {
        at += kClause.size();
        const auto same = std::ranges::mismatch(std::string_view(text).substr(at), escaped).in2;
        if (same != escaped.begin())
            text.replace(at, static_cast<std::size_t>(same - escaped.begin()), kMask);
    }
    if (password.size() < kUnmistakable)
        return text;
    return common::ReplaceAll(common::ReplaceAll(text, escaped, kMask), password, kMask);
}

} // namespace dbsetup
