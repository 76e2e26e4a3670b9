#include "settings/kToolsSettings.h"
#include "supervision/Backups.h"

#include <string_view>

namespace supervision {

namespace {

/// A database of the servers, its copy, and the keys of the account that the servers use it by.
struct RemoteCopy {
    const char* database;
    const char* copy;
    std::string_view userKey;
    std::string_view passwordKey;
};
constexpr RemoteCopy kCopies[] = {
    {"glogin", "bk_glogin", "gloginname", "gloginpass"},
    {"amcharacter", "bk_amcharacter", "amcharactername", "amcharacterpass"},
    {"amglobal", "bk_amglobal", "amglobalname", "amglobalpass"},
};
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

} // namespace

void BackUpDatabases(clsMySQLCopyDatabase& copier, const clsINI& kTools, const clsINI& kernoIni) {
    const Disconnector disconnector(copier);
    copier.DestinationHostname(kTools.INIProperty(settings::key::kBackupHostname));
    copier.DestinationUsername(kTools.INIProperty(settings::key::kBackupUsername));
    copier.DestinationPassword(kTools.INIProperty(settings::key::kBackupPassword));
    copier.ConnectDestination();
    for (const RemoteCopy& each : kCopies) {
        copier.SourceHostname(kThisComputer);
        copier.SourceUsername(kernoIni.INIProperty(each.userKey));
        copier.SourcePassword(kernoIni.INIProperty(each.passwordKey));
        copier.ConnectSource();
        if (!copier.CopyDatabase(each.database, each.copy))
            return;
        copier.DisconnectSource();
    }
}

void RestoreDatabases(clsMySQLCopyDatabase& copier, const clsINI& kTools, const clsINI& kernoIni) {
    const Disconnector disconnector(copier);
    copier.SourceHostname(kTools.INIProperty(settings::key::kBackupHostname));
    copier.SourceUsername(kTools.INIProperty(settings::key::kBackupUsername));
    copier.SourcePassword(kTools.INIProperty(settings::key::kBackupPassword));
    for (const RemoteCopy& each : kCopies) {
        copier.DestinationHostname(kThisComputer);
        copier.DestinationUsername(kernoIni.INIProperty(each.userKey));
        copier.DestinationPassword(kernoIni.INIProperty(each.passwordKey));
        if (!copier.SourceConnected())
            copier.ConnectSource();
        copier.ConnectDestination();
        if (!copier.CopyDatabase(each.copy, each.database))
            return;
        copier.DisconnectDestination();
    }
}

} // namespace supervision
