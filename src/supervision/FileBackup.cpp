#include "common/Files.h"
#include "common/RuntimeError.h"
#include "servers/Databases.h"
#include "servers/Servers.h"
#include "supervision/BackupArchive.h"
#include "supervision/Backups.h"

#include <string_view>

namespace supervision {

namespace {

using Progress = std::function<bool(const std::string& file)>;

std::string FolderIn(const std::string& parent, const suite::Database& database) {
    return parent + "\\" + std::string(database.name);
}

common::FileHandle OpenFile(const std::string& path, DWORD access, DWORD disposition) {
    // The database server has the tables open for writing.
    const HANDLE file =
        CreateFileA(path.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                    disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        common::RaiseFileError(GetLastError(), path);
    return common::FileHandle(file);
}

/// Deletes a file that was not written to its end: half a table would look like one to restore from.
struct Unfinished {
    ~Unfinished() {
        if (!finished)
            DeleteFileA(path.c_str());
    }
    const std::string& path;
    bool finished = false;
};

/// Copies in pieces, so that a table of any size leaves the windows alive. False when `goOn` ended it.
bool CopyFileOver(const std::string& from, const std::string& to, const std::function<bool()>& goOn) {
    constexpr DWORD kPiece = 1024 * 1024;
    const common::FileHandle source = OpenFile(from, GENERIC_READ, OPEN_EXISTING);
    const common::FileHandle target = OpenFile(to, GENERIC_WRITE, CREATE_ALWAYS);
    // From here on, because a file that could not be opened still holds the copy of a backup before.
    Unfinished unfinished{to};
    std::string piece(kPiece, '\0');
    for (;;) {
        DWORD size = 0;
        DWORD written = 0;
        if (!ReadFile(source.get(), piece.data(), kPiece, &size, nullptr))
            common::RaiseFileError(GetLastError(), from);
        if (size == 0)
            break;
        if (!WriteFile(target.get(), piece.data(), size, &written, nullptr))
            common::RaiseFileError(GetLastError(), to);
        if (written < size)
            common::RaiseFileError(ERROR_DISK_FULL, to);
        if (!goOn())
            return false;
    }
    unfinished.finished = true;
    return true;
}

} // namespace

void BackUpFiles(const Progress& progress) {
    SYSTEMTIME now{};
    GetLocalTime(&now);
    // The folder of the tool's data is there from its first start on, unless it was deleted since.
    common::RequireFolder(common::ProgramFolder() + "\\kTools");
    common::RequireFolder(BackupFolder());
    const std::string backup = BackupFolder() + "\\" + BackupName(now);
    common::RequireFolder(backup);
    for (const suite::Database& database : suite::Databases())
        common::RequireFolder(FolderIn(backup, database));
    for (const suite::Database& database : suite::Databases()) {
        // The setting ends in a backslash of its own; a second one does no harm.
        const std::string source = FolderIn(modServerControl::MySQLPath() + "\\data", database) + "\\";
        const std::string target = FolderIn(backup, database) + "\\";
        for (const std::size_t position : database.copyOrder) {
            for (const std::string_view ending : suite::kTableFileEndings) {
                const std::string file = std::string(database.tables[position].name) + std::string(ending);
                const auto goOn = [&] { return progress(file); };
                if (!goOn() || !CopyFileOver(source + file, target + file, goOn))
                    return;
            }
        }
    }
}

} // namespace supervision
