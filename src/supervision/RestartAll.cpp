#include "supervision/RestartAll.h"

#include "common/Files.h"
#include "common/RuntimeError.h"
#include "gui/Application.h"
#include "gui/MsgBox.h"
#include "gui/TaskWaits.h"
#include "servers/modServerControl.h"
#include "servers/Processes.h"

#include <algorithm>
#include <exception>
#include <memory>
#include <optional>
#include <utility>

namespace supervision {

using namespace modServerControl;

namespace {

gui::Task<bool> ShutDownAndStart(Restart restart, clsINI priorities) {
    using journal::Asker;
    const bool byItself = restart.asker == Asker::Detector || restart.asker == Asker::Address;
    if (byItself && BackupPhase::IsOn()) {
        journal::Write(restart.asker, "restart skipped: a backup has the servers down");
        co_return false;
    }
    const std::optional<Ownership> ownership = Ownership::Take(restart.servers);
    if (!ownership) {
        journal::Write(restart.asker, "restart skipped: another restart or a backup is under way");
        co_return false;
    }
    if (restart.message)
        SendPlayerMessage(*restart.message);
    const Predecessors old = Predecessors::All();
    for (const Server server : restart.servers)
        co_await ShutdownFor(restart.asker, server);
    if (restart.meanwhile)
        co_await restart.meanwhile();
    // Asked after the shutdown: a folder that is being replaced by a new version stays down.
    if (restart.checkExecutables && !HasAllExecutables()) {
        journal::Write(restart.asker, "servers stay down: an executable is missing");
        co_return true;
    }
    ForEach(restart.servers, [&](Server server) {
        const std::string name = ComponentOf(server).name;
        if (ownership->StartIsCancelled(server))
            journal::Write(restart.asker, name + " server: shut down meanwhile, stays down");
        else if (old.HaveSuccessor(server))
            journal::Write(restart.asker, name + " server: was started meanwhile");
        else
            StartWithPriority(server, priorities, restart.asker);
    });
    co_return true;
}

/// What a restart of the tool's own leaves to whoever asked for it. When that one has gone, its error is told
/// here.
struct Outcome {
    Outcome() = default;
    ~Outcome() {
        try {
            Take();
        } catch (const RuntimeError& raised) {
            gui::Tell("The servers were restarted, but not with their priorities: " + raised.Description(),
                      MB_ICONEXCLAMATION);
        }
    }
    Outcome(const Outcome&) = delete;

    void Take() {
        if (const std::exception_ptr raised = std::exchange(error, {}))
            std::rethrow_exception(raised);
    }

    gui::Event over;
    bool done = false;
    std::exception_ptr error;
};

gui::Task<> ForOutcome(std::shared_ptr<Outcome> outcome, Restart restart, clsINI priorities) {
    outcome->done = co_await ShutDownAndStart(restart, priorities);
}

} // namespace

gui::Task<bool> RestartAll(Restart restart, clsINI priorities) {
    if (restart.meanwhile) {
        const bool done = co_await ShutDownAndStart(restart, priorities);
        co_return done;
    }
    const auto outcome = std::make_shared<Outcome>();
    gui::ToolTasks().Start(ForOutcome(outcome, restart, priorities), [outcome](std::exception_ptr error) {
        outcome->error = error;
        outcome->over.Set();
    });
    co_await outcome->over.Happened();
    outcome->Take();
    co_return outcome->done;
}

bool HasAllExecutables() {
    return std::ranges::all_of(kServers,
                               [](Server server) { return common::FileExists(ExecutablePath(server)); });
}

} // namespace supervision
