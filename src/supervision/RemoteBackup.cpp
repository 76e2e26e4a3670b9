#include "supervision/RemoteBackup.h"

#include "common/Numbers.h"
#include "common/RuntimeError.h"
#include "settings/kToolsSettings.h"
#include "supervision/SecondGeneration.h"
#include "supervision/TableCheck.h"

namespace supervision {

namespace {

/// Ends both connections, however the backup ends.
class Disconnector {
public:
    explicit Disconnector(clsMySQLCopyDatabase& copier) : copier_(copier) {}
    ~Disconnector() {
        copier_.DisconnectSource();
        copier_.DisconnectDestination();
    }
    Disconnector(const Disconnector&) = delete;
    Disconnector& operator=(const Disconnector&) = delete;

private:
    clsMySQLCopyDatabase& copier_;
};

clsMySQLCopyDatabase::Status ConnectSource(clsMySQLCopyDatabase& copier, const clsINI& kernoIni,
                                           const suite::Database& database) {
    const suite::Login login = suite::ReadLogin(kernoIni, database);
    copier.SourceHostname(suite::kThisComputer);
    copier.SourceUsername(login.user);
    copier.SourcePassword(login.password);
    return copier.ConnectSource();
}

gui::Task<bool> HasRowsAside(database::Connection& side, std::string database) {
    auto ask = [database](const database::SessionPtr& session) { return HasRows(session, database); };
    const bool any = co_await side.Call(ask);
    co_return any;
}

/// Makes sure that the copy will not be worse than the one that it replaces.
gui::Task<> LookThrough(clsMySQLCopyDatabase& copier, std::string database, std::string copy,
                        MayReplaceByEmpty mayReplace) {
    {
        const LongRequests large(copier.Source());
        auto check = [database](const database::SessionPtr& session) { CheckTables(session, database); };
        co_await copier.Source().Call(check);
    }
    const bool rows = co_await HasRowsAside(copier.Source(), database);
    if (rows)
        co_return;
    const bool copied = co_await HasRowsAside(copier.Destination(), copy);
    if (!copied)
        co_return;
    const bool replace = co_await mayReplace(database, copy);
    if (!replace)
        throw RuntimeError(kNothingToCopy, database + " has no rows. Its copy " + copy +
                                               ", which has some, was kept. To replace it by nothing, press "
                                               "\"Back Up Database\"");
}

gui::Task<TableSums> CopyAndReadBack(clsMySQLCopyDatabase& copier, std::string database, std::string copy) {
    co_await copier.CopyDatabase(database, copy);
    const TableSums there = co_await copier.ReadBack(copy);
    const std::string differences = Differences(copier.Copied(), there);
    if (!differences.empty())
        throw RuntimeError(kCopyDiffers, copy + " is not what was sent: " + differences);
    co_return there;
}

} // namespace

std::string CopyOf(const suite::Database& database) {
    return "bk_" + std::string(database.name);
}

gui::Task<RemoteBackup> BackUpDatabases(clsMySQLCopyDatabase& copier, clsINI kTools, clsINI kernoIni,
                                        MayReplaceByEmpty mayReplace, std::function<void()> begins) {
    const Disconnector disconnector(copier);
    copier.DestinationHostname(kTools.INIProperty(settings::key::kBackupHostname));
    copier.DestinationUsername(kTools.INIProperty(settings::key::kBackupUsername));
    copier.DestinationPassword(kTools.INIProperty(settings::key::kBackupPassword));
    const bool generations = common::Val(kTools.INIProperty(settings::key::kBackupSecondGeneration)) != 0;
    co_await copier.ConnectDestination();
    if (generations)
        co_await MendSecondGeneration(copier.Destination());
    for (const suite::Database& database : suite::Databases()) {
        co_await ConnectSource(copier, kernoIni, database);
        co_await LookThrough(copier, std::string(database.name), CopyOf(database), mayReplace);
        copier.DisconnectSource();
    }
    begins();
    RemoteBackup backup;
    for (const suite::Database& database : suite::Databases()) {
        co_await ConnectSource(copier, kernoIni, database);
        const TableSums copied =
            co_await CopyAndReadBack(copier, std::string(database.name), CopyOf(database));
        copier.DisconnectSource();
        for (const suite::Table& table : database.tables)
            backup.tables += copied.contains(std::string(table.name));
        if (const auto accounts = copied.find("account"); accounts != copied.end())
            backup.accounts = accounts->second.rows;
    }
    if (generations)
        co_await ReplaceSecondGeneration(copier.Destination());
    co_return backup;
}

gui::Task<> RestoreDatabases(clsMySQLCopyDatabase& copier, clsINI kTools, clsINI kernoIni) {
    const Disconnector disconnector(copier);
    copier.SourceHostname(kTools.INIProperty(settings::key::kBackupHostname));
    copier.SourceUsername(kTools.INIProperty(settings::key::kBackupUsername));
    copier.SourcePassword(kTools.INIProperty(settings::key::kBackupPassword));
    for (const suite::Database& database : suite::Databases()) {
        copier.DestinationHostname(suite::kThisComputer);
        const suite::Login login = suite::ReadLogin(kernoIni, database);
        copier.DestinationUsername(login.user);
        copier.DestinationPassword(login.password);
        if (!copier.SourceConnected())
            co_await copier.ConnectSource();
        co_await copier.ConnectDestination();
        co_await copier.CopyDatabase(CopyOf(database), std::string(database.name));
        copier.DisconnectDestination();
    }
}

} // namespace supervision
