#pragma once

#include <string>
#include <string_view>
#include <vector>

/// The statements that make a login on the server, and what may be told of them.
namespace dbsetup {

/// The one statement by which servers with the classic clause make a login, or give it its new password, with
/// all rights on `database`, from this computer only. The name goes in as it is typed, without quotes.
std::string GrantStatement(std::string_view database, std::string_view user, std::string_view password);

/// The statements that do the same on servers that make logins apart from granting rights. `plugin` names the
/// way in which the server checks the password, "" for the server's own choice.
std::vector<std::string> CreateUserStatements(std::string_view database, std::string_view user,
                                              std::string_view password, std::string_view plugin = {});

/// A server's words on one of these statements, which repeat a piece of it, with *** for the password.
std::string WithoutPassword(std::string_view words, std::string_view password);

} // namespace dbsetup
