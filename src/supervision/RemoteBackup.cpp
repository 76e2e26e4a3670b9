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

void ConnectSource(clsMySQLCopyDatabase& copier, const clsINI& kernoIni, const suite::Database& database) {
    const suite::Login login = suite::ReadLogin(kernoIni, database);
    copier.SourceHostname(kThisComputer);
    copier.SourceUsername(login.user);
    copier.SourcePassword(login.password);
    copier.ConnectSource();
}

} // namespace

void BackUpDatabases(clsMySQLCopyDatabase& copier, const clsINI& kTools, const clsINI& kernoIni) {
    const Disconnector disconnector(copier);
    copier.DestinationHostname(kTools.INIProperty(settings::key::kBackupHostname));
    copier.DestinationUsername(kTools.INIProperty(settings::key::kBackupUsername));
    copier.DestinationPassword(kTools.INIProperty(settings::key::kBackupPassword));
    copier.ConnectDestination();
    for (const suite::Database& database : suite::Databases()) {
        ConnectSource(copier, kernoIni, database);
        copier.CheckSource(std::string(database.name));
        copier.DisconnectSource();
    }
    for (const suite::Database& database : suite::Databases()) {
        ConnectSource(copier, kernoIni, database);
        if (!copier.CopyDatabase(std::string(database.name), CopyOf(database)))
            return;
        copier.DisconnectSource();
    }
}

void RestoreDatabases(clsMySQLCopyDatabase& copier, const clsINI& kTools, const clsINI& kernoIni) {
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
            copier.ConnectSource();
        copier.ConnectDestination();
        if (!copier.CopyDatabase(CopyOf(database), std::string(database.name)))
            return;
        copier.DisconnectDestination();
    }
}

} // namespace supervision
