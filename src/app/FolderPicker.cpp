#include "app/FolderPicker.h"

#include "common/Files.h"
#include "common/Text.h"
#include "servers/modServerControl.h"
#include "settings/clsINI.h"
#include "settings/kToolsSettings.h"

const WantedFolder kServerFolder{settings::key::kKernoPath, modServerControl::KernoPath,
                                 modServerControl::KernoPath, "Kerno.ini",
                                 "Character file does not exists, or wrong directory."};

// "<path>" stands in the message as it is.
const WantedFolder kMySQLFolder{
    settings::key::kMySQLPath, modServerControl::MySQLPath, modServerControl::MySQLPath, "bin\\mysqld.exe",
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

} // namespace

void FolderPicker::Load() {
    // A folder that has gone leaves the tool's own place to start from, and where that has no drive, in a
    // network, any drive that can be read.
    const std::string stored = clsINI(settings::kToolsIniPath()).INIProperty(wanted_.key);
    std::vector<std::string> starts{wanted_.get(), stored, CurrentFolder(), common::ProgramFolder()};
    std::erase(starts, std::string());
    for (const std::string& drive : Drives()) {
        drives_.AddItem(drive);
        starts.push_back(drive + "\\");
    }
    std::string shown;
    for (auto start = starts.begin(); start != starts.end() && shown.empty(); ++start)
        try {
            folders_.Path(*start);
            shown = *start;
        } catch (const RuntimeError&) {
            // The next one then.
        }
    for (int i = 0; i < drives_.ListCount(); ++i)
        if (common::EqualsIgnoreCase(drives_.List(i), shown.substr(0, 2)))
            lastGoodDrive_ = i;
    drives_.ListIndex(lastGoodDrive_);
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
