#include "app/frmMainMenu.h"

#include "app/frmAbout.h"
#include "gui/modSystemTray.h"
#include "gui/MsgBox.h"

namespace {

gui::Task<> EndAfter(std::string message, std::string title) {
    co_await gui::MsgBox(message, MB_ICONERROR, title);
    gui::End(1);
}

} // namespace

void frmMainMenu::Form_Load() {
    // A drive without a medium is told by our own message, not by a box of the system's that stops
    // everything.
    SetErrorMode(SEM_FAILCRITICALERRORS);
    Start(StartUp());
}

/// The tool ends at once, save for what would cost the only copy on the backup server.
gui::Task<bool> frmMainMenu::Form_QueryUnload() {
    frmServerControl* panel = serverControl_.Peek();
    const std::string question = panel && panel->Loaded() ? panel->backup.LeavingQuestion() : "";
    const bool ends = co_await MayEnd(question);
    co_return ends;
}

void frmMainMenu::Form_Unload() {
    gui::End();
}

void frmMainMenu::Form_Going() {
    modSystemTray::TrayDeleteIcon(*this);
}

void frmMainMenu::Form_MouseDown(gui::MouseButton /*button*/, int x, int y) {
    const int event = modSystemTray::EventOf(*this, x, y);
    if (event == modSystemTray::kTrayDoubleClick) {
        Restore();
        BringToFront();
        inTray_ = false;
        tmrTray.Enabled(false);
        modSystemTray::TrayDeleteIcon(*this);
    } else if (event == modSystemTray::kTrayRightDown) {
        modSystemTray::TrayShowMenu(*this, mnuSystray);
    }
}

void frmMainMenu::Form_TaskbarCreated() {
    if (inTray_)
        servers_.AddIcon();
}

void frmMainMenu::Form_Error(const RuntimeError& error) {
    gui::ToolTasks().Start(EndAfter(
        "Kerno Tools has to close: error " + std::to_string(error.Number()) + ", " + error.Description() +
            "\n\nPut this right and start Kerno Tools again. The servers keep running.",
        Caption()));
}

void frmMainMenu::cmdServerStatus_Click() {
    serverStatus_.Get().Show(this);
}

void frmMainMenu::cmdServerConfig_Click() {
    serverSettings_.Get().Show(this);
}

void frmMainMenu::cmdServerControl_Click() {
    frmServerControl& panel = serverControl_.Get();
    if (panel.State() == gui::WindowState::Minimized)
        panel.State(gui::WindowState::Normal);
    panel.Show(this);
}

void frmMainMenu::cmdAccountEditor_Click() {
    accountEditor_.Get().Show(this);
}

void frmMainMenu::mnuSetUpMySQL_Click() {
    mySQLSetUp_.Get().Show(this);
}

void frmMainMenu::cmdMinimizetoTray_Click() {
    inTray_ = servers_.AddIcon();
    tmrTray.Enabled(inTray_);
    // Without an icon the window stays in the task bar, or there would be no way back to it.
    if (inTray_)
        Visible(false);
    else
        State(gui::WindowState::Minimized);
}

gui::Task<> frmMainMenu::StartServer(Server server) {
    co_await servers_.Start(server);
}

void frmMainMenu::Supervise() {
    cmdMinimizetoTray_Click();
    frmServerControl& panel = serverControl_.Get();
    panel.Load(this);
    if (panel.Loaded())
        panel.State(gui::WindowState::Minimized);
}

void frmMainMenu::tmrTray_Timer() {
    servers_.FollowServers();
}

gui::Task<> frmMainMenu::mnuAbout_Click() {
    gui::Local<frmAbout> about;
    co_await about->ShowModal(*this);
}
void frmMainMenu::mnuHelp_Click() {
    // As F1 in this window.
    SendMessageA(Window(), WM_HELP, 0, 0);
}

void frmMainMenu::mnuMenuMain_Click() {
    Restore();
    BringToFront();
}

void frmMainMenu::mnuExit_Click() {
    Unload();
}

void frmMainMenu::Restore() {
    if (State() == gui::WindowState::Minimized)
        State(gui::WindowState::Normal);
    Visible(true);
}
