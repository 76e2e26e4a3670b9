#include "common/Files.h"
#include "common/RuntimeError.h"
#include "servers/Databases.h"
#include "servers/Servers.h"
#include "supervision/BackupArchive.h"
#include "supervision/Backups.h"
#include "supervision/BackupWork.h"

#include <string_view>

namespace supervision {

namespace {

std::string FolderIn(const std::string& parent, const suite::Database& database) {
    return parent + "\\" + std::string(database.name);
}

/// Copies in pieces, so that a table of any size leaves the windows alive.
gui::Task<> CopyFileOver(std::string from, std::string to) {
    constexpr std::size_t kPiece = std::size_t{1024} * 1024;
    // The database server has the tables open for writing.
    const common::FileHandle source = common::OpenFile(from, GENERIC_READ, OPEN_EXISTING);
    common::FileReplacement target(to);
    std::string piece(kPiece, '\0');
    while (const std::size_t size = common::ReadFrom(source, piece.data(), piece.size(), from)) {
        target.Write(std::string_view(piece).substr(0, size));
        co_await gui::NextTurn();
    }
    target.Commit();
}

} // namespace

gui::Task<> BackUpFiles(std::function<void(const std::string& file)> progress) {
    SYSTEMTIME now{};
    GetLocalTime(&now);
    BackupWork work;
    const std::string gathered = work.Gather();
    for (const suite::Database& database : suite::Databases())
        common::MakeFolder(FolderIn(gathered, database));
    for (const suite::Database& database : suite::Databases()) {
        // The setting ends in a backslash of its own; a second one does no harm.
        const std::string source = FolderIn(modServerControl::MySQLPath() + "\\data", database) + "\\";
        const std::string target = FolderIn(gathered, database) + "\\";
        for (const std::size_t position : database.copyOrder) {
            for (const std::string_view ending : suite::kTableFileEndings) {
                const std::string file = std::string(database.tables[position].name) + std::string(ending);
                progress(file);
                co_await CopyFileOver(source + file, target + file);
            }
        }
    }
    work.Publish(BackupName(now));
}

} // namespace supervision
