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
    TableMaker(SetUpServer& server, AllowEngineForm allow) : server_(server), allow_(std::move(allow)) {}

    /// False when the server takes the engine's form only and that was declined.
    gui::Task<bool> Make(std::string statement) {
        std::optional<database::Error> rejection;
        try {
            co_await server_.Execute(statement);
            co_return true;
        } catch (const database::Error& error) {
            if (error.Number() != kSyntaxError)
                throw;
            rejection = error;
        }
        if (!allowed_)
            allowed_ = co_await allow_(*rejection);
        if (allowed_)
            co_await server_.Execute(EngineForm(statement));
        co_return allowed_;
    }

private:
    SetUpServer& server_;
    AllowEngineForm allow_;
    bool allowed_ = false;
};

} // namespace

gui::Task<bool> Repair(SetUpServer& server, AllowEngineForm allowEngineForm) {
    const NameSet existing = co_await server.ExistingDatabases();
    for (const suite::Database& database : suite::Databases())
        if (!existing.contains(std::string(database.name)))
            co_await server.Execute(CreateStatement(database));

    TableMaker maker(server, std::move(allowEngineForm));
    for (const suite::Database& database : suite::Databases()) {
        const NameSet tables = co_await server.ExistingTables(database.name);
        for (const suite::Table& table : database.tables) {
            if (tables.contains(std::string(table.name)))
                continue;
            const bool made = co_await maker.Make(CreateStatement(table));
            if (!made)
                co_return false;
        }
    }
    co_return true;
}

gui::Task<> DropDatabases(SetUpServer& server) {
    std::optional<database::Error> first;
    for (const suite::Database& database : suite::Databases()) {
        try {
            co_await server.Execute("DROP DATABASE " + std::string(database.name) + ";");
        } catch (const database::Error& error) {
            if (!first)
                first = error;
            // Nothing reaches the others either.
            if (error.ConnectionLost())
                break;
        }
    }
    if (first)
        throw database::Error(*first);
}

} // namespace dbsetup
