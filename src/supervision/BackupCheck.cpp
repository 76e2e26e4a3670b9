#include "supervision/BackupCheck.h"

#include "common/Files.h"
#include "common/Numbers.h"
#include "common/RuntimeError.h"
#include "database/Connection.h"
#include "servers/Databases.h"
#include "settings/kToolsSettings.h"
#include "supervision/NextBackup.h"
#include "supervision/TableCheck.h"
#include "supervision/TableCopy.h"

#include <algorithm>
#include <cmath>

namespace supervision {

namespace {

using Findings = std::vector<std::string>;

/// What tells one server from another.
struct ServerFacts {
    std::string identity; ///< host, port and data folder; "" when the server does not answer
    std::string dataFolder;
};

gui::Task<ServerFacts> Ask(std::string host, suite::Login login) {
    ServerFacts facts;
    try {
        database::Connection server;
        co_await server.Open(database::MySQLConnectionString(host, login.user, login.password));
        const database::Answer answer =
            co_await server.ReadAll("SELECT @@hostname, @@port, @@datadir, @@pid_file");
        facts.dataFolder = answer.At(0, 2).AsText();
        for (std::size_t i = 0; i < answer.columns.size(); ++i)
            facts.identity += answer.At(0, i).AsText() + "|";
    } catch (const RuntimeError&) {
        // Whoever asks says that there was no answer.
    }
    co_return facts;
}

/// The bytes of the tables' files. Adds a finding for one that is missing.
std::uint64_t LookAtFiles(const std::string& data, Findings& findings) {
    std::uint64_t bytes = 0;
    std::string missing;
    for (const suite::Database& database : suite::Databases())
        for (const suite::Table& table : database.tables)
            for (const std::string_view ending : suite::kTableFileEndings) {
                const std::string path = data + "\\" + std::string(database.name) + "\\" +
                                         std::string(table.name) + std::string(ending);
                const common::FileHandle file = common::TryOpenFile(path, 0, OPEN_EXISTING);
                LARGE_INTEGER size{};
                if (file && GetFileSizeEx(file.get(), &size))
                    bytes += static_cast<std::uint64_t>(size.QuadPart);
                else if (missing.empty())
                    missing = path;
            }
    if (!missing.empty())
        findings.push_back("The file backup will fail: " + missing + " is missing" + WhyMissing(missing));
    return bytes;
}

void LookAtSpace(double needed, Findings& findings) {
    ULARGE_INTEGER available{};
    if (!GetDiskFreeSpaceExA(common::ProgramFolder().c_str(), &available, nullptr, nullptr))
        return;
    constexpr double kMegabyte = 1024.0 * 1024;
    if (static_cast<double>(available.QuadPart) < needed)
        findings.push_back("The next backups need " + common::ThousandsText(needed / kMegabyte) +
                           " MB, and the disk of kTools has " +
                           common::ThousandsText(static_cast<double>(available.QuadPart) / kMegabyte) +
                           " MB");
}

void LookAtSettings(const BackupSettings& settings, const std::string& kept, Findings& findings) {
    if (settings.durationMinutes <= 0)
        findings.push_back("With a duration of 0 minutes the clock makes no backup");
    const double folders = common::Val(kept);
    if (folders <= 0)
        findings.push_back("\"Backups to keep\" deletes each backup as soon as it is made");
    else if (folders < FoldersOfAPhase(settings))
        findings.push_back("One backup phase makes up to " + common::NumberText(FoldersOfAPhase(settings)) +
                           " folders, and " + common::NumberText(folders) +
                           " are kept: none is older than the last phase");
}

} // namespace

double FoldersOfAPhase(const BackupSettings& settings) {
    return std::ceil(std::max(settings.durationMinutes, 0.0)) + 1;
}

std::string RetentionText(const BackupSettings& settings, const std::string& kept) {
    const double folders = std::max(0.0, std::floor(common::Val(kept)));
    const double cycles = std::floor(folders / FoldersOfAPhase(settings));
    const double hours = cycles * (settings.periodMinutes + settings.durationMinutes) / 60;
    return common::NumberText(folders) + " folders are kept: those of the last " +
           common::NumberText(std::round(hours * 10) / 10) + " hours";
}

gui::Task<Findings> FindingsOnBackup(clsINI kTools, clsINI kernoIni, BackupSettings settings,
                                     std::string kept) {
    Findings findings;
    const std::string option = kernoIni.INIProperty(settings::key::kBackupOption);
    const bool files = option == "0" || option == "2";
    const bool remote = option == "1" || option == "2";
    if (!files && !remote)
        findings.push_back(BackupOptionText(kernoIni));
    LookAtSettings(settings, kept, findings);
    const std::string data = MySQLDataFolder();
    if (files)
        LookAtSpace(FoldersOfAPhase(settings) * static_cast<double>(LookAtFiles(data, findings)), findings);
    const suite::Login login = suite::ReadLogin(kernoIni, suite::LoginDatabase());
    const std::string thisComputer = suite::kThisComputer;
    const ServerFacts here = co_await Ask(thisComputer, login);
    if (here.identity.empty())
        findings.push_back("MySQL of this computer does not answer to the login of Kerno.ini");
    else if (files && !AreSameFolder(data, here.dataFolder))
        findings.push_back("The files are copied from " + data + ", and MySQL keeps its own in " +
                           here.dataFolder);
    if (remote) {
        const std::string host = kTools.INIProperty(settings::key::kBackupHostname);
        const suite::Login keeper{kTools.INIProperty(settings::key::kBackupUsername),
                                  kTools.INIProperty(settings::key::kBackupPassword)};
        const ServerFacts there = co_await Ask(host, keeper);
        if (there.identity.empty())
            findings.push_back("The remote SQL server " + host + " does not answer to its login");
        else if (there.identity == here.identity)
            findings.push_back("The remote SQL server " + host +
                               " is this computer's own: a broken disk takes both");
    }
    co_return findings;
}

} // namespace supervision
