#include "servers/Databases.h"
#include "settings/kToolsSettings.h"
#include "supervision/Backups.h"

#include <string>

namespace supervision {

namespace {

std::string CopyOf(const suite::Database& database) {
    return "bk_" + std::string(database.name);
}

constexpr const char* kThisComputer = "localhost";

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
    copier.SourceHostname(kThisComputer);
    copier.SourceUsername(login.user);
    copier.SourcePassword(login.password);
    return copier.ConnectSource();
}

} // namespace

gui::Task<> BackUpDatabases(clsMySQLCopyDatabase& copier, clsINI kTools, clsINI kernoIni) {
    const Disconnector disconnector(copier);
    copier.DestinationHostname(kTools.INIProperty(settings::key::kBackupHostname));
    copier.DestinationUsername(kTools.INIProperty(settings::key::kBackupUsername));
    copier.DestinationPassword(kTools.INIProperty(settings::key::kBackupPassword));
    co_await copier.ConnectDestination();
    for (const suite::Database& database : suite::Databases()) {
        co_await ConnectSource(copier, kernoIni, database);
        co_await copier.CheckSource(std::string(database.name));
        copier.DisconnectSource();
    }
    for (const suite::Database& database : suite::Databases()) {
        co_await ConnectSource(copier, kernoIni, database);
        const std::int16_t copied =
            co_await copier.CopyDatabase(std::string(database.name), CopyOf(database));
        if (!copied)
            co_return;
        copier.DisconnectSource();
    }
}

gui::Task<> RestoreDatabases(clsMySQLCopyDatabase& copier, clsINI kTools, clsINI kernoIni) {
    const Disconnector disconnector(copier);
    copier.SourceHostname(kTools.INIProperty(settings::key::kBackupHostname));
    copier.SourceUsername(kTools.INIProperty(settings::key::kBackupUsername));
    copier.SourcePassword(kTools.INIProperty(settings::key::kBackupPassword));
    for (const suite::Database& database : suite::Databases()) {
        copier.DestinationHostname(kThisComputer);
        const suite::Login login = suite::ReadLogin(kernoIni, database);
        copier.DestinationUsername(login.user);
        copier.DestinationPassword(login.password);
        if (!copier.SourceConnected())
            co_await copier.ConnectSource();
        co_await copier.ConnectDestination();
        const std::int16_t copied =
            co_await copier.CopyDatabase(CopyOf(database), std::string(database.name));
        if (!copied)
            co_return;
        copier.DisconnectDestination();
    }
}

} // namespace supervision
