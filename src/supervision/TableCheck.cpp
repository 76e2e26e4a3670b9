#include "supervision/TableCheck.h"

#include "common/Files.h"
#include "common/Text.h"
#include "database/Error.h"

#include <array>
#include <optional>

namespace supervision {

namespace {

/// What tells a folder from every other, however its path is written; nothing when there is none.
std::optional<std::array<DWORD, 3>> FolderIdentity(const std::string& path) {
    const auto folder = common::Own<common::FileHandle>(CreateFileA(
        path.c_str(), 0, common::kShareAll, nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    BY_HANDLE_FILE_INFORMATION information;
    if (!folder || !GetFileInformationByHandle(folder.get(), &information))
        return {};
    return std::array{information.dwVolumeSerialNumber, information.nFileIndexHigh,
                      information.nFileIndexLow};
}

[[noreturn]] void RaiseDamaged(const std::string& table, const std::string& why) {
    throw RuntimeError(kTableDamaged,
                       table + " is damaged: " + why + ". It is not copied; the earlier copy stays");
}

/// Has the server read every row. The random number keeps it from telling a number that it knows, and the
/// list of no indexes from counting in an index, which is whole beside rows that are not.
void ScanTables(const database::SessionPtr& session, const std::string& database,
                const std::vector<std::string>& tables) {
    for (const std::string& table : tables) {
        try {
            database::Scalar(session, "SELECT COUNT(*) FROM " + database + "." + database::Quoted(table) +
                                          " USE INDEX () WHERE RAND() >= 0");
        } catch (const database::Error& error) {
            if (error.ConnectionLost())
                throw;
            RaiseDamaged(database + "." + table, error.Description());
        }
    }
}

} // namespace

void ExecuteKnown(const database::SessionPtr& session, const std::vector<std::string>& statements) {
    for (const std::string& statement : statements) {
        try {
            database::Execute(session, statement);
            return;
        } catch (const database::Error& error) {
            if (error.ConnectionLost())
                throw;
        }
    }
}

std::vector<std::string> Names(const database::SessionPtr& session, const std::string& sql) {
    std::vector<std::string> names;
    const database::Answer answer = database::ReadAll(session, sql);
    for (std::size_t row = 0; row < answer.Count(); ++row)
        names.push_back(answer.At(row, 0).AsText());
    return names;
}

std::string ShowTables(const std::string& database) {
    return "SHOW TABLES FROM " + database + ";";
}

void CheckTables(const database::SessionPtr& session, const std::string& database) {
    // MySQL takes CHECK TABLE in a way only that leaves the driver out of step.
    constexpr long kCannotBePrepared = 1295;
    const std::vector<std::string> tables = Names(session, ShowTables(database));
    std::string list;
    for (const std::string& name : tables)
        list += (list.empty() ? "" : ", ") + database + "." + database::Quoted(name);
    if (tables.empty())
        return;
    std::optional<database::Answer> answer;
    try {
        answer = database::ReadAll(session, "CHECK TABLE " + list);
    } catch (const database::Error& error) {
        if (error.Number() != kCannotBePrepared)
            throw;
    }
    if (!answer)
        return ScanTables(session, database, tables);
    for (std::size_t row = 0; row < answer->Count(); ++row) {
        const auto text = [&](const char* name) { return answer->At(row, answer->Position(name)).AsText(); };
        // Notes and warnings tell of tables that are open, or of an engine that has nothing to check.
        if (common::EqualsIgnoreCase(text("Msg_type"), "error"))
            RaiseDamaged(text("Table"), text("Msg_text"));
    }
}

bool HasRows(const database::SessionPtr& session, const std::string& database) {
    constexpr long kUnknownDatabase = 1049;
    try {
        for (const std::string& table : Names(session, ShowTables(database))) {
            const std::string first =
                "SELECT 1 FROM " + database + "." + database::Quoted(table) + " LIMIT 1";
            if (database::ReadAll(session, first).Count() > 0)
                return true;
        }
    } catch (const database::Error& error) {
        if (error.Number() != kUnknownDatabase)
            throw;
    }
    return false;
}

bool AreSameFolder(const std::string& path, const std::string& serverPath) {
    const bool onSameDrive = serverPath.starts_with('/') || serverPath.starts_with('\\');
    const auto here = FolderIdentity(path);
    return here && here == FolderIdentity(onSameDrive ? path.substr(0, 2) + serverPath : serverPath);
}

} // namespace supervision
