#include "dbsetup/SetUpServer.h"

#include "database/Error.h"

namespace dbsetup {

gui::Task<std::string> SetUpServer::Version() {
    co_await connection_.Open("DRIVER={MySQL ODBC 3.51 Driver};SERVER=localhost;OPTION=3");
    const database::Value version = co_await connection_.Scalar("SELECT VERSION();");
    co_return version.AsText();
}

gui::Task<> SetUpServer::LogIn() {
    const AdministratorLogin login = administrator_();
    co_await connection_.Open(database::MySQLConnectionString(login.host, login.user, login.password));
}

gui::Task<NameSet> SetUpServer::ExistingDatabases() {
    NameSet names = co_await Names("SHOW DATABASES;");
    co_return names;
}

gui::Task<NameSet> SetUpServer::ExistingTables(std::string_view database) {
    NameSet names = co_await Names("SHOW TABLES FROM " + std::string(database) + ";");
    co_return names;
}

gui::Task<> SetUpServer::Execute(std::string sql) {
    co_await connection_.Execute(std::move(sql));
}

gui::Task<database::Value> SetUpServer::Scalar(std::string sql) {
    database::Value value = co_await connection_.Scalar(std::move(sql));
    co_return value;
}

gui::Task<ServerFacts> SetUpServer::Facts() {
    const database::Answer answer =
        co_await connection_.ReadAll("SELECT VERSION(), @@version_comment, @@sql_mode");
    ServerFacts facts;
    if (answer.Count() > 0)
        facts = {answer.At(0, 0).AsText(), answer.At(0, 1).AsText(), answer.At(0, 2).AsText()};
    co_return facts;
}

gui::Task<bool> SetUpServer::HasPlugin(std::string name) {
    const database::Value count =
        co_await Scalar("SELECT COUNT(*) FROM information_schema.PLUGINS WHERE PLUGIN_STATUS = 'ACTIVE' AND "
                        "PLUGIN_NAME = '" +
                        name + "'");
    co_return count.AsInteger() > 0;
}

gui::Task<std::string> SetUpServer::Card() {
    const ServerFacts facts = co_await Facts();
    co_return ServerCard(facts);
}

gui::Task<std::string> SetUpServer::Contents() {
    constexpr std::pair<const char*, const char*> kCounted[] = {{"glogin.account", "accounts"},
                                                                {"amcharacter.charinfo", "characters"}};
    std::string contents;
    for (const auto& [table, what] : kCounted) {
        try {
            const database::Value count = co_await Scalar(std::string("SELECT COUNT(*) FROM ") + table);
            contents += (contents.empty() ? "" : ", ") + Grouped(count.AsInteger()) + " " + what;
        } catch (const database::Error& error) {
            // The table is missing, or the administrator may not look into it.
            if (error.ConnectionLost())
                throw;
        }
    }
    co_return contents;
}

gui::Task<NameSet> SetUpServer::Names(std::string sql) {
    const database::Answer rows = co_await connection_.ReadAll(std::move(sql));
    NameSet names;
    for (std::size_t row = 0; row < rows.Count(); ++row)
        names.insert(rows.At(row, 0).AsText());
    co_return names;
}

} // namespace dbsetup
