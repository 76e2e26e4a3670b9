#include "supervision/SecondGeneration.h"

#include "common/RuntimeError.h"
#include "database/Query.h"
#include "servers/Databases.h"
#include "supervision/RemoteBackup.h"
#include "supervision/TableCheck.h"

#include <algorithm>
#include <set>

namespace supervision {

namespace {

using database::SessionPtr;

// A new generation is made under the second name, and takes the place of the present one, which goes to the
// third, in one statement.
constexpr const char* kPresent = "bk2_";
constexpr const char* kNext = "bk2next_";
constexpr const char* kFormer = "bk2former_";

std::string In(const char* generation, const suite::Database& database) {
    return generation + std::string(database.name);
}

std::set<std::string> TablesIn(const SessionPtr& server, const std::string& database) {
    std::set<std::string> tables;
    const database::Answer answer = database::ReadAll(
        server, "SELECT TABLE_NAME FROM information_schema.TABLES WHERE TABLE_SCHEMA = ?", {database});
    for (std::size_t row = 0; row < answer.Count(); ++row)
        tables.insert(answer.At(row, 0).AsText());
    return tables;
}

void Drop(const SessionPtr& server, const char* generation) {
    for (const suite::Database& database : suite::Databases())
        database::Execute(server, "DROP DATABASE IF EXISTS " + In(generation, database));
}

void Make(const SessionPtr& server, const char* generation) {
    for (const suite::Database& database : suite::Databases())
        database::Execute(server, "CREATE DATABASE IF NOT EXISTS " + In(generation, database));
}

/// Moves every table of the next generation to its place, and the one that is there out of its way.
void Exchange(const SessionPtr& server) {
    std::string moves;
    const auto move = [&](const std::string& from, const std::string& to, const std::string& table) {
        const std::string name = "." + database::Quoted(table);
        moves += (moves.empty() ? "" : ", ") + from + name + " TO " + to + name;
    };
    for (const suite::Database& database : suite::Databases()) {
        const auto present = TablesIn(server, In(kPresent, database));
        for (const std::string& table : TablesIn(server, In(kNext, database))) {
            if (present.contains(table))
                move(In(kPresent, database), In(kFormer, database), table);
            move(In(kNext, database), In(kPresent, database), table);
        }
    }
    if (!moves.empty())
        database::Execute(server, "RENAME TABLE " + moves);
}

/// The databases that take the former generation are made when the next one is whole, and go at the end.
bool ExchangeHasBegun(const SessionPtr& server) {
    const auto databases = Names(server, "SHOW DATABASES");
    return std::ranges::any_of(suite::Databases(), [&](const suite::Database& database) {
        return std::ranges::find(databases, In(kFormer, database)) != databases.end();
    });
}

void FinishExchange(const SessionPtr& server) {
    Make(server, kPresent);
    Make(server, kFormer);
    Exchange(server);
    Drop(server, kNext);
    Drop(server, kFormer);
}

/// CHECKSUM TABLE tells two tables of one definition on one server apart.
void RequireEqual(const SessionPtr& server, const std::string& first, const std::string& second) {
    const database::Answer answer = database::ReadAll(server, "CHECKSUM TABLE " + first + ", " + second);
    if (answer.Count() != 2 || answer.At(0, 1).AsText() != answer.At(1, 1).AsText())
        throw RuntimeError(kCopyDiffers, second + " is not what " + first + " is");
}

void Mend(const SessionPtr& server) {
    if (ExchangeHasBegun(server))
        FinishExchange(server);
    else
        Drop(server, kNext);
}

void Replace(const SessionPtr& server) {
    Drop(server, kNext);
    Make(server, kNext);
    for (const suite::Database& database : suite::Databases()) {
        for (const std::string& table : TablesIn(server, CopyOf(database))) {
            const std::string from = CopyOf(database) + "." + database::Quoted(table);
            const std::string to = In(kNext, database) + "." + database::Quoted(table);
            database::Execute(server, "CREATE TABLE " + to + " LIKE " + from);
            database::Execute(server, "INSERT INTO " + to + " SELECT * FROM " + from);
            RequireEqual(server, from, to);
            // Its index is on the disk then, where a power cut does not reach it.
            ExecuteKnown(server, {"FLUSH TABLES " + to});
        }
    }
    FinishExchange(server);
}

} // namespace

gui::Task<> MendSecondGeneration(database::Connection& destination) {
    const LongRequests large(destination);
    auto mend = [](const SessionPtr& server) { Mend(server); };
    co_await destination.Call(mend);
}

gui::Task<> ReplaceSecondGeneration(database::Connection& destination) {
    const LongRequests large(destination);
    auto replace = [](const SessionPtr& server) { Replace(server); };
    co_await destination.Call(replace);
}

} // namespace supervision
