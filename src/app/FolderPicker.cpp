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

using Folders = std::vector<std::string>;

/// The folder that the tool works with, and the one that is stored.
Folders FoldersOfSettings(const WantedFolder& wanted) {
    return {wanted.get(), clsINI(settings::kToolsIniPath()).INIProperty(wanted.key)};
}

/// Folders in which the program, a path below the folder, is running.
Folders FoldersRunning(const WantedFolder& wanted) {
    const std::string program = wanted.program;
    Folders folders;
    for (const std::string& path : modServerControl::PathsRunning(program.substr(program.rfind('\\') + 1)))
        if (common::UpperCase(path).ends_with(common::UpperCase("\\" + program)))
            folders.push_back(path.substr(0, path.size() - program.size()));
    return folders;
}

/// Folders near the tool that hold the file: its own and the one above, what lies in them and on its drive.
Folders FoldersNear(const WantedFolder& wanted) {
    const std::string& tool = common::ProgramFolder();
    Folders folders;
    const auto take = [&](const std::string& folder) {
        if (common::FileExists(folder + "\\" + wanted.requiredFile))
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

/// The tool's own place, and where that has no drive, in a network, any drive that can be read.
Folders FoldersAnyway(const WantedFolder& /*wanted*/) {
    Folders folders{CurrentFolder(), common::ProgramFolder()};
    for (const std::string& drive : Drives())
        folders.push_back(drive + "\\");
    return folders;
}

/// Where to begin, the likeliest places first. Looking through processes and folders takes its time, so each
/// is asked only when none of those before it knows a folder that can be shown.
constexpr Folders (*kSearches[])(const WantedFolder&) = {FoldersOfSettings, FoldersRunning, FoldersNear,
                                                         FoldersAnyway};

} // namespace

void FolderPicker::Load() {
    for (const std::string& drive : Drives())
        drives_.AddItem(drive);
    folders_.Wanted(wanted_.requiredFile);
    const std::string shown = ShowStart();
    for (int i = 0; i < drives_.ListCount(); ++i)
        if (common::EqualsIgnoreCase(drives_.List(i), shown.substr(0, 2)))
            lastGoodDrive_ = i;
    drives_.ListIndex(lastGoodDrive_);
    FolderChanged();
}

std::string FolderPicker::ShowStart() {
    for (const auto search : kSearches)
        for (const std::string& start : search(wanted_)) {
            if (start.empty())
                continue;
            try {
                folders_.Path(start);
                return start;
            } catch (const RuntimeError&) {
                // The next one then.
            }
        }
    return {};
}

std::string FolderPicker::Selected() const {
    std::string folder = folders_.Path();
    if (folder.empty())
        return {};
    if (!folder.ends_with('\\'))
        folder += '\\';
    return common::FileExists(folder + wanted_.requiredFile) ? folder : std::string();
}

void FolderPicker::FolderChanged() {
    bool holds = false;
    try {
        holds = !Selected().empty();
    } catch (const RuntimeError&) {
        // OK tells why such a folder cannot be taken.
    }
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
        folder = Selected();
    } catch (const RuntimeError& error) {
        form_.Tell(error.Description());
        return;
    }
    if (folder.empty()) {
        form_.Tell(wanted_.messageWithoutIt);
        return;
    }
    // The file first: a folder that could not be kept is not used either.
    clsINI(settings::kToolsIniPath()).INIProperty(wanted_.key, folder);
    wanted_.set(folder);
    form_.Unload();
}
