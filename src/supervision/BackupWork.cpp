#include "supervision/BackupWork.h"

#include "common/RuntimeError.h"
#include "supervision/BackupArchive.h"

#include <algorithm>
#include <vector>

namespace supervision {

namespace {

std::string Folder() {
    return common::ProgramFolder() + "\\kTools\\BackupWork";
}

constexpr const char* kGathered = "\\new";
constexpr std::string_view kReplaced = "replaced ";
constexpr std::string_view kRemoved = "removed ";

std::vector<common::FolderEntry> Entries(const std::string& folder) {
    return common::EntriesOf(folder).value_or(std::vector<common::FolderEntry>{});
}

bool IsThere(const std::string& path) {
    return GetFileAttributesA(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

std::string Dated(std::string_view name) {
    return BackupFolder() + "\\" + std::string(name);
}

void Move(const std::string& from, const std::string& to) {
    if (!MoveFileExA(from.c_str(), to.c_str(), MOVEFILE_WRITE_THROUGH))
        common::RaiseFileError(GetLastError(), to);
}

/// Calls `visit` with the paths in both folders of every file that stands in the first one.
void ForEachFile(const std::string& first, const std::string& second, const auto& visit) {
    for (const common::FolderEntry& entry : Entries(first)) {
        const std::string below = "\\" + entry.name;
        if (entry.IsFolder())
            ForEachFile(first + below, second + below, visit);
        else
            visit(first + below, second + below);
    }
}

/// Moves what only the first folder has into the second one, and deletes the rest.
void TakeOver(const std::string& from, const std::string& to) {
    for (const common::FolderEntry& entry : Entries(from)) {
        const std::string below = "\\" + entry.name;
        if (!IsThere(to + below))
            Move(from + below, to + below);
        else if (entry.IsFolder())
            TakeOver(from + below, to + below);
    }
    DeleteFolder(from);
}

} // namespace

void DeleteFolder(const std::string& folder) {
    for (const common::FolderEntry& entry : Entries(folder)) {
        const std::string path = folder + "\\" + entry.name;
        if (entry.attributes & FILE_ATTRIBUTE_READONLY)
            SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_NORMAL);
        if (!entry.IsFolder())
            DeleteFileA(path.c_str());
        else if (entry.attributes & FILE_ATTRIBUTE_REPARSE_POINT)
            RemoveDirectoryA(path.c_str());
        else
            DeleteFolder(path);
    }
    RemoveDirectoryA(folder.c_str());
}

BackupWork::BackupWork() : folder_(Folder()) {
    // The folder of the tool's data is there from its first start on, unless it was deleted since.
    common::RequireFolder(common::ProgramFolder() + "\\kTools");
    common::RequireFolder(folder_);
    lock_ = common::OpenFile(folder_ + "\\lock", GENERIC_WRITE, CREATE_ALWAYS, 0);
    BringInOrder();
}

BackupWork::~BackupWork() {
    DeleteFolder(folder_ + kGathered);
    lock_.reset();
    DeleteFileA((folder_ + "\\lock").c_str());
    // Stays where another copy of the tool has just begun, or where something could not be deleted.
    RemoveDirectoryA(folder_.c_str());
}

void BackupWork::BringInOrder() const {
    for (const common::FolderEntry& entry : Entries(folder_)) {
        const std::string path = folder_ + "\\" + entry.name;
        if (!entry.IsFolder())
            continue;
        if (!entry.name.starts_with(kReplaced)) {
            DeleteFolder(path);
            continue;
        }
        // The kill came between the two steps of Publish, or after them.
        const std::string dated = Dated(std::string_view(entry.name).substr(kReplaced.size()));
        common::RequireFolder(BackupFolder());
        if (IsThere(dated))
            TakeOver(path, dated);
        else
            Move(path, dated);
    }
}

bool BackupWork::IsLeft() {
    return common::FolderExists(Folder());
}

std::string BackupWork::Gather() {
    const std::string folder = folder_ + kGathered;
    DeleteFolder(folder);
    common::MakeFolder(folder);
    return folder;
}

void BackupWork::Publish(const std::string& name) {
    common::RequireFolder(BackupFolder());
    const std::string gathered = folder_ + kGathered;
    const std::string dated = Dated(name);
    if (!IsThere(dated))
        return Move(gathered, dated);
    ForEachFile(gathered, dated, [](const std::string&, const std::string& old) {
        if (IsThere(old))
            common::OpenFile(old, GENERIC_WRITE | DELETE, OPEN_EXISTING);
    });
    const std::string replaced = folder_ + "\\" + std::string(kReplaced) + name;
    Move(dated, replaced);
    try {
        Move(gathered, dated);
    } catch (const RuntimeError&) {
        Move(replaced, dated);
        throw;
    }
    TakeOver(replaced, dated);
}

void BackupWork::Remove(const std::string& name) {
    const auto entries = Entries(BackupFolder());
    const auto entry = std::ranges::find(entries, name, &common::FolderEntry::name);
    // Moving a link may move what it leads to.
    if (entry == entries.end() || (entry->attributes & FILE_ATTRIBUTE_REPARSE_POINT)) {
        RemoveDirectoryA(Dated(name).c_str());
        return;
    }
    std::string removed = folder_ + "\\" + std::string(kRemoved) + name;
    while (IsThere(removed))
        removed += "+";
    // In one step: half of a folder would still have the name of a backup.
    if (MoveFileExA(Dated(name).c_str(), removed.c_str(), 0))
        DeleteFolder(removed);
}

} // namespace supervision
