#include "servers/Ownership.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>

namespace modServerControl {

namespace {

/// The same in every copy of the tool that works on this server folder, whatever its architecture.
std::string NameOf(const std::string& what) {
    std::uint64_t folder = 14'695'981'039'346'656'037u;
    std::string path = KernoPath();
    CharLowerBuffA(path.data(), static_cast<DWORD>(path.size()));
    for (const char c : path)
        folder = (folder ^ static_cast<unsigned char>(c)) * 1'099'511'628'211u;
    char number[20];
    std::snprintf(number, sizeof number, "%016llX", static_cast<unsigned long long>(folder));
    // Of all sessions: a second user may run a copy too.
    return std::string("Global\\kTools.") + number + "." + what;
}

std::string NameOf(Server server) {
    return NameOf(ComponentOf(server).name);
}

/// Null when there is one of the name already.
EventHandle MakeNew(const std::string& name) {
    EventHandle event(CreateEventA(nullptr, TRUE, FALSE, name.c_str()));
    return GetLastError() == ERROR_ALREADY_EXISTS ? EventHandle() : std::move(event);
}

/// One that belongs to a user with more rights exists too, although it cannot be opened.
bool Exists(const std::string& name) {
    const EventHandle event(OpenEventA(SYNCHRONIZE, FALSE, name.c_str()));
    return event || GetLastError() == ERROR_ACCESS_DENIED;
}

} // namespace

std::optional<Ownership> Ownership::Take(std::span<const Server> servers) {
    Ownership ownership;
    for (const Server server : servers) {
        EventHandle event = MakeNew(NameOf(server));
        if (!event)
            return {};
        ownership.owned_.emplace_back(server, std::move(event));
    }
    return ownership;
}

bool Ownership::StartIsCancelled(Server server) const {
    const auto found = std::ranges::find(owned_, server, &std::pair<Server, EventHandle>::first);
    return found != owned_.end() && WaitForSingleObject(found->second.get(), 0) == WAIT_OBJECT_0;
}

bool IsOwned(Server server) {
    return Exists(NameOf(server));
}

void CancelStart(Server server) {
    const EventHandle event(OpenEventA(EVENT_MODIFY_STATE, FALSE, NameOf(server).c_str()));
    if (event)
        SetEvent(event.get());
}

BackupPhase::BackupPhase() : mark_(CreateEventA(nullptr, TRUE, FALSE, NameOf("Backup").c_str())) {}

bool BackupPhase::IsOn() {
    return Exists(NameOf("Backup"));
}

} // namespace modServerControl
