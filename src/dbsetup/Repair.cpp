#include "dbsetup/Repair.h"

#include "dbsetup/Schema.h"

#include <optional>

namespace dbsetup {

namespace {

/// The server's number for a statement that it cannot read.
constexpr long kSyntaxError = 1064;

/// Makes tables, in the old form where the server takes it.
class TableMaker {
public:
    TableMaker(SetUpServer& server, const AllowEngineForm& allow) : server_(server), allow_(allow) {}

    /// False when the server takes the engine's form only and that was declined.
    bool Make(const suite::Table& table) {
        const std::string statement = CreateStatement(table);
        const auto rejection = Rejection(statement);
        if (!rejection)
            return true;
        allowed_ = allowed_ || allow_(*rejection);
        if (allowed_)
            server_.Execute(EngineForm(statement));
        return allowed_;
    }

private:
    std::optional<database::Error> Rejection(const std::string& statement) {
        try {
            server_.Execute(statement);
            return {};
        } catch (const database::Error& error) {
            if (error.Number() != kSyntaxError)
                throw;
            return error;
        }
    }

    SetUpServer& server_;
    const AllowEngineForm& allow_;
    bool allowed_ = false;
};

} // namespace

bool Repair(SetUpServer& server, const AllowEngineForm& allowEngineForm) {
    const NameSet existing = server.ExistingDatabases();
    for (const suite::Database& database : suite::Databases())
        if (!existing.contains(std::string(database.name)))
            server.Execute(CreateStatement(database));

    TableMaker maker(server, allowEngineForm);
    for (const suite::Database& database : suite::Databases()) {
        const NameSet tables = server.ExistingTables(database);
        for (const suite::Table& table : database.tables)
            if (!tables.contains(std::string(table.name)) && !maker.Make(table))
                return false;
    }
    return true;
}

void DropDatabases(SetUpServer& server) {
    std::optional<database::Error> first;
    for (const suite::Database& database : suite::Databases()) {
        try {
            server.Execute("DROP DATABASE " + std::string(database.name) + ";");
        } catch (const database::Error& error) {
            if (!first)
                first = error;
        }
    }
    if (first)
        throw database::Error(*first);
}

} // namespace dbsetup
