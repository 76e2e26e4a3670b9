#include "app/FolderPicker.h"

#include "common/Files.h"
#include "common/Text.h"
#include "servers/modServerControl.h"
#include "servers/Processes.h"
#include "settings/clsINI.h"
#include "settings/kToolsSettings.h"

#include <vector>

const WantedFolder kServerFolder{settings::key::kKernoPath,
                                 modServerControl::KernoPath,
                                 modServerControl::KernoPath,
                                 "Kerno.ini",
                                 "kLogin.exe",
                                 "Character file does not exists, or wrong directory."};

// "<path>" stands in the message as it is.
const WantedFolder kMySQLFolder{
    settings::key::kMySQLPath,
    modServerControl::MySQLPath,
    modServerControl::MySQLPath,
    "bin\\mysqld.exe",
    "bin\\mysqld.exe",
    "MySQL Daemon (mysqld.exe) not found in the specified directory (<path>\\bin). "
    "Please check your path"};

namespace {

/// "c:" for each drive that the computer has.
std::vector<std::string> Drives() {
    std::vector<std::string> drives;
    const DWORD present = GetLogicalDrives();
    for (int i = 0; i < 26; ++i)
        if (present & (1u << i))
            drives.push_back({static_cast<char>('a' + i), ':'});
    return drives;
}

std::string CurrentFolder() {
    char folder[MAX_PATH];
    const DWORD length = GetCurrentDirectoryA(sizeof folder, folder);
    return std::string(folder, length < sizeof folder ? length : 0);
}

/// Folders in which the program, a path below the folder, is running.
std::vector<std::string> FoldersRunning(const std::string& program) {
    std::vector<std::string> folders;
    for (const std::string& path : modServerControl::PathsRunning(program.substr(program.rfind('\\') + 1)))
        if (common::UpperCase(path).ends_with(common::UpperCase("\\" + program)))
            folders.push_back(path.substr(0, path.size() - program.size()));
    return folders;
}

/// Folders near the tool that hold the file: its own and the one above, what lies in them and on its drive.
std::vector<std::string> FoldersNear(const std::string& tool, const std::string& file) {
    std::vector<std::string> folders;
    const auto take = [&](const std::string& folder) {
        if (common::FileExists(folder + "\\" + file))
            folders.push_back(folder);
    };
    for (const std::string& place : {tool, tool.substr(0, tool.rfind('\\')), tool.substr(0, 2)}) {
        take(place);
        for (const common::FolderEntry& entry :
             common::EntriesOf(place).value_or(std::vector<common::FolderEntry>{}))
            if (entry.IsFolder())
                take(place + "\\" + entry.name);
    }
    return folders;
}

/// Where to begin, the first one that can be shown.
std::vector<std::string> StartsFor(const WantedFolder& wanted) {
    const std::string stored = clsINI(settings::kToolsIniPath()).INIProperty(wanted.key);
    std::vector<std::string> starts{wanted.get(), stored};
    const auto take = [&starts](const std::vector<std::string>& more) {
        starts.insert(starts.end(), more.begin(), more.end());
    };
    take(FoldersRunning(wanted.program));
    take(FoldersNear(common::ProgramFolder(), wanted.requiredFile));
    // A folder that has gone leaves the tool's own place to start from, and where that has no drive, in a
    // network, any drive that can be read.
    take({CurrentFolder(), common::ProgramFolder()});
    for (const std::string& drive : Drives())
        starts.push_back(drive + "\\");
    std::erase(starts, std::string());
    return starts;
}

} // namespace

void FolderPicker::Load() {
    for (const std::string& drive : Drives())
        drives_.AddItem(drive);
    folders_.Wanted(wanted_.requiredFile);
    std::string shown;
    for (const std::string& start : StartsFor(wanted_))
        try {
            folders_.Path(start);
            shown = start;
            break;
        } catch (const RuntimeError&) {
            // The next one then.
        }
    for (int i = 0; i < drives_.ListCount(); ++i)
        if (common::EqualsIgnoreCase(drives_.List(i), shown.substr(0, 2)))
            lastGoodDrive_ = i;
    drives_.ListIndex(lastGoodDrive_);
    FolderChanged();
}

void FolderPicker::FolderChanged() {
    std::string folder;
    try {
        folder = folders_.Path();
    } catch (const RuntimeError&) {
        // OK tells why such a folder cannot be taken.
    }
    const bool holds = !folder.empty() && common::FileExists(folder + (folder.ends_with('\\') ? "" : "\\") +
                                                             wanted_.requiredFile);
    holds_.Caption((holds ? "Holds " : "Does not hold ") + std::string(wanted_.requiredFile));
}

void FolderPicker::DriveChanged() {
    const int chosen = drives_.ListIndex();
    // Also called when the selection is set back or set at the start: the folders are right already then.
    if (chosen == lastGoodDrive_)
        return;
    try {
        folders_.Path(drives_.List(chosen) + "\\");
        lastGoodDrive_ = chosen;
    } catch (const RuntimeError& error) {
        form_.Tell(error.Number() == common::kDeviceUnavailable ? "Drive is unavailable"
                                                                : "Drive is inaccessible");
        drives_.ListIndex(lastGoodDrive_);
    }
}

void FolderPicker::Accept() {
    std::string folder;
    try {
        folder = folders_.Path();
    } catch (const RuntimeError& error) {
        form_.Tell(error.Description());
        return;
    }
    if (!folder.ends_with('\\'))
        folder += '\\';
    if (!common::FileExists(folder + wanted_.requiredFile)) {
        form_.Tell(wanted_.messageWithoutIt);
        return;
    }
    // The file first: a folder that could not be kept is not used either.
    clsINI(settings::kToolsIniPath()).INIProperty(wanted_.key, folder);
    wanted_.set(folder);
    form_.Unload();
}
