#include "app/FolderRights.h"
#include "app/frmBrowse.h"
#include "app/frmMainMenu.h"
#include "app/frmSQLPath.h"
#include "common/Files.h"
#include "common/Numbers.h"
#include "gui/modSystemTray.h"
#include "settings/kToolsSettings.h"

// How the tool starts, and the folders that it works with.

namespace {

constexpr const char* kCaption = "Kerno Tools ::";

} // namespace

void BringOtherCopyToFront() {
    modServerControl::FindWindowWhere(nullptr, "#32770", [](HWND window) {
        DWORD process = 0;
        GetWindowThreadProcessId(window, &process);
        if (process == GetCurrentProcessId() || modServerControl::ReadFullTitle(window) != kCaption)
            return false;
        AllowSetForegroundWindow(process);
        // As if its tray icon had been double-clicked, whether it has one or not.
        PostMessageA(window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(modSystemTray::kTrayDoubleClick, 0));
        // A message box of the window has its title too, and takes no notice.
        return false;
    });
}

gui::Task<> frmMainMenu::StartUp() {
    if (previousInstance_) {
        const int answer = co_await MsgBox(
            "It is not advisable to run few instances of this tool. Close this instance ?", MB_YESNO);
        if (answer == IDYES) {
            BringOtherCopyToFront();
            gui::End();
            co_return;
        }
    }
    kTools_.INIPath(settings::kToolsIniPath());
    if (!common::FileExists(kTools_.INIPath()))
        settings::CreateDefaultSettings(kTools_.INIPath());
    co_await LoadSharedSettings();
    MakeDataFolders();
    Started.Set();
    if (const std::string& folder = common::ProgramFolder();
        app::RunsAsAdministrator() && app::OthersMayWrite(folder))
        Tell(app::OpenFolderWarning(folder), MB_ICONWARNING);
}

gui::Task<> frmMainMenu::LoadSharedSettings() {
    const std::string kernoPath = kTools_.INIProperty(settings::key::kKernoPath);
    if (!kernoPath.empty()) {
        modServerControl::KernoPath(kernoPath);
        const std::string method = kTools_.INIProperty(settings::key::kServerDetectionMethod);
        modServerControl::ServerDetectionMethod(common::CInt(common::Val(method)));
    } else {
        co_await mnuSetPath_Click();
        kTools_.INIProperty(settings::key::kServerDetectionMethod, "0");
    }
    const std::string mySQLPath = kTools_.INIProperty(settings::key::kMySQLPath);
    if (!mySQLPath.empty())
        modServerControl::MySQLPath(mySQLPath);
    else
        co_await mnuSetSQLPath_Click();
}

void frmMainMenu::MakeDataFolders() {
    const std::string& root = common::ProgramFolder();
    if (common::FolderExists(root + "\\kTools") || common::FileExists(root + "\\kTools"))
        return;
    // The look-up finds normal files, never a folder, so nothing is made here: the tool comes with its data
    // folders, and an empty set of them would only hide that they are missing.
    for (const char* folder : {"\\kTools", "\\kTools\\databases", "\\kTools\\maps"})
        if (common::FileExists(root + folder))
            common::MakeFolder(root + folder);
}

gui::Task<> frmMainMenu::mnuSetPath_Click() {
    const std::string before = modServerControl::KernoPath();
    gui::Local<frmBrowse> picker;
    co_await picker->ShowModal(*this);
    if (modServerControl::KernoPath() != before)
        UseServerFolder();
}

void frmMainMenu::UseServerFolder() {
    std::string reopened;
    std::string busy;
    // The panel may be in the middle of a backup, and holds nothing of the file's but its place.
    if (frmServerControl* panel = serverControl_.Peek())
        panel->UseServerFolder();
    const auto reopen = [&](auto& slot) {
        gui::Form* form = slot.Peek();
        if (!form || !form->Loaded())
            return;
        const std::string caption = "\n" + form->Caption();
        // It stays when it is at work, or asks about what was not saved.
        if (!form->Busy())
            form->Unload();
        if (slot.Peek()) {
            busy += caption;
            return;
        }
        slot.Get().Show(this);
        reopened += caption;
    };
    reopen(serverSettings_);
    reopen(accountEditor_);
    reopen(mySQLSetUp_);
    std::string text = "The servers' folder is " + modServerControl::KernoPath() + " now.";
    if (!reopened.empty())
        text += "\n\nThese windows were opened anew to show what is in it:" + reopened;
    if (!busy.empty())
        text += "\n\nThese windows still work with the folder before. Close them and open them again:" + busy;
    if (!reopened.empty() || !busy.empty())
        Tell(text);
}

gui::Task<> frmMainMenu::mnuSetSQLPath_Click() {
    gui::Local<frmSQLPath> picker;
    co_await picker->ShowModal(*this);
}
