#include "app/ServerMenu.h"

#include "common/Files.h"
#include "gui/modSystemTray.h"
#include "servers/ServerWatch.h"
#include "servers/StubbornDialogs.h"
#include "supervision/RestartAll.h"

#include <algorithm>
#include <optional>

using namespace modServerControl;

namespace {

constexpr const char* kBackupQuestion =
    "A backup has the servers down, and closes them again while it lasts. Start all the same ?";

/// What is more urgent than the servers' state, in the few characters that a tooltip has.
std::optional<std::string> TroubleText() {
    const ULONGLONG now = GetTickCount64();
    if (const auto dialog = Stubborn().Oldest(now))
        return "Kerno Tools :: a dialog of " + dialog->program + " does not close";
    for (const Server server : kServers)
        if (const int launches = Launches().Recent(server, now); launches >= LaunchHistory::kMany)
            return std::string("Kerno Tools :: ") + ComponentOf(server).name + " server: started " +
                   std::to_string(launches) + " times";
    return {};
}

} // namespace

gui::Task<bool> ServerMenu::Start(Server server) {
    const bool may = co_await MayActInBackup();
    if (!may)
        co_return false;
    // Owned for as long as it is looked at and launched: the restarter of another copy of the tool looks
    // after it too.
    std::optional<Ownership> ownership = Ownership::Take({&server, 1});
    // In this order: between the two looks the window of a server that is starting may come up.
    if (ownership && (IsStarting(server) || IsRunning(server))) {
        // The question may stay open for long.
        ownership.reset();
        const std::string question = SecondInstanceQuestion(server);
        const int answer = co_await form_.MsgBox(question, MB_YESNO);
        if (answer != IDYES)
            co_return false;
        ownership = Ownership::Take({&server, 1});
    }
    if (!ownership) {
        form_.Tell(supervision::kRestartUnderWay);
        co_return false;
    }
    std::optional<RuntimeError> error;
    try {
        StartWithPriority(server, kTools_, journal::Asker::Tray);
    } catch (const RuntimeError& raised) {
        error = raised;
    }
    RefreshTip();
    TellPriorities({server}, error);
    co_return true;
}

gui::Task<> ServerMenu::Shutdown(Server server) {
    CancelStart(server);
    TellRights({server});
    co_await ShutdownFor(journal::Asker::Tray, server);
    RefreshTip();
}

gui::Task<> ServerMenu::Restart(Server server) {
    const std::vector<Server> servers{server};
    co_await RestartServers(servers);
}

gui::Task<> ServerMenu::StartKerno() {
    // KernoPath ends in a separator already. Windows takes two in a row for one.
    const bool complete = std::ranges::all_of(kServers, [](Server server) {
        return common::FileExists(KernoPath() + "\\" + ComponentOf(server).executable);
    });
    if (!complete) {
        form_.Tell("Can't find Kerno executables in current directory");
        co_return;
    }
    for (const Server server : kServers) {
        const bool started = co_await Start(server);
        if (!started)
            co_return;
    }
}

gui::Task<> ServerMenu::ShutdownKerno() {
    // All of them first: the shutdown of the last one takes seconds, and a start may be due at any time.
    std::ranges::for_each(kServers, CancelStart);
    TellRights({kServers.begin(), kServers.end()});
    for (const Server server : kServers)
        co_await ShutdownFor(journal::Asker::Tray, server);
    modSystemTray::TrayModifyIcon(form_, kKernoInactive);
    told_ = kKernoInactive;
}

gui::Task<> ServerMenu::RestartKerno() {
    const std::vector<Server> servers(kServers.begin(), kServers.end());
    co_await RestartServers(servers);
}

void ServerMenu::ShowKerno() {
    std::ranges::for_each(kServers, Show);
}
void ServerMenu::HideKerno() {
    std::ranges::for_each(kServers, Hide);
}

gui::Task<bool> ServerMenu::MayActInBackup() {
    if (!BackupPhase::IsOn())
        co_return true;
    const int answer = co_await form_.MsgBox(kBackupQuestion, MB_YESNO);
    co_return answer == IDYES;
}

gui::Task<> ServerMenu::RestartServers(std::vector<Server> servers) {
    const bool may = co_await MayActInBackup();
    if (!may)
        co_return;
    TellRights(servers);
    const supervision::Restart restart{
        .asker = journal::Asker::Tray, .message = {}, .meanwhile = {}, .servers = servers};
    bool done = true;
    std::optional<RuntimeError> error;
    try {
        done = co_await supervision::RestartAll(restart, kTools_);
    } catch (const RuntimeError& raised) {
        error = raised;
    }
    if (done)
        TellPriorities(servers, error);
    else
        form_.Tell(supervision::kRestartUnderWay);
}

void ServerMenu::TellPriorities(const std::vector<Server>& servers,
                                const std::optional<RuntimeError>& error) {
    // The servers run, so the tool goes on whatever is wrong with the number.
    for (const Server server : servers) {
        const std::string key(ComponentOf(server).priorityKey);
        std::string text;
        try {
            text = key.empty() ? "0" : kTools_.INIProperty(key);
        } catch (const RuntimeError&) {
            break;
        }
        if (PriorityIndexIn(text))
            continue;
        form_.Tell(key + " in kTools.ini is \"" + text +
                       "\", which is no number from 0 to 5. The server was started without it.",
                   MB_ICONEXCLAMATION);
        return;
    }
    if (error)
        form_.Tell("The server was started without its priority: " + error->Description(),
                   MB_ICONEXCLAMATION);
}

void ServerMenu::TellRights(const std::vector<Server>& servers) {
    std::string names;
    for (const Server server : servers)
        if (const HWND window = MainWindow(server); window && HasMoreRights(window))
            names += "\nKerno " + std::string(ComponentOf(server).name) + " Server";
    if (!names.empty())
        form_.Tell("Kerno Tools cannot close what runs as administrator:" + names, MB_ICONEXCLAMATION);
}

void ServerMenu::RefreshTip() {
    modSystemTray::TrayModifyIcon(form_, ServerStatusText());
    told_ = TrayStatusText();
}

bool ServerMenu::AddIcon() {
    told_ = TrayStatusText();
    return modSystemTray::TrayAddIcon(form_, told_);
}

void ServerMenu::FollowServers() {
    const std::string text = TroubleText().value_or(TrayStatusText());
    if (text == told_)
        return;
    told_ = text;
    modSystemTray::TrayModifyIcon(form_, text);
}
