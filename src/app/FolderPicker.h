#pragma once

#include "app/DirTree.h"
#include "gui/Control.h"
#include "gui/Lists.h"

#include <string>
#include <string_view>

/// What a folder picker asks for.
struct WantedFolder {
    std::string_view key;            ///< key of kTools.ini that the folder is kept under
    const std::string& (*get)();     ///< the shared setting
    void (*set)(const std::string&); ///< sets it
    const char* requiredFile;        ///< a file that must be in the folder
    const char* program;             ///< one that runs from the folder, too
    const char* messageWithoutIt;
};

extern const WantedFolder kServerFolder;
extern const WantedFolder kMySQLFolder;

/// What the two folder pickers do: a drive list and a folder tree that follow each other, and a folder that
/// is stored only when the required file is in it.
class FolderPicker {
public:
    FolderPicker(gui::Form& form, gui::ComboBox& drives, DirTree& folders, gui::Label& holds,
                 const WantedFolder& wanted)
        : form_(form), drives_(drives), folders_(folders), holds_(holds), wanted_(wanted) {}

    /// Begins in the folder of the settings; without one where the program runs, or in a folder near the tool
    /// that holds the required file.
    void Load();
    /// Says whether the selected folder holds the required file.
    void FolderChanged();
    /// Shows the folders of the chosen drive; a drive that cannot be read is refused with a message, and the
    /// last good one is chosen again.
    void DriveChanged();
    /// Stores the chosen folder, ended by a backslash, and unloads the form; without the required file it
    /// shows the message and stays.
    void Accept();

private:
    /// Shows the first folder that can be shown and returns it; "" when there is none.
    std::string ShowStart();
    /// The selected folder, ended by a backslash; "" when it does not hold the required file. Raises the
    /// reason why a folder cannot be taken.
    std::string Selected() const;

    gui::Form& form_;
    gui::ComboBox& drives_;
    DirTree& folders_;
    gui::Label& holds_;
    const WantedFolder& wanted_;
    int lastGoodDrive_ = -1;
};
