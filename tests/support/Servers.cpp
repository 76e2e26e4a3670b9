#include "support/Servers.h"

#include "common/Handle.h"
#include "common/StartProgram.h"
#include "common/Text.h"
#include "servers/ForeignWindows.h"
#include "support/Wait.h"

#include <gtest/gtest.h>
#include <tlhelp32.h>

#include <array>
#include <filesystem>
#include <vector>

namespace support {

namespace {

using Handle = common::Handle<HANDLE, CloseHandle>;

std::string ImagePath(DWORD process) {
    const Handle handle(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, process));
    return handle ? modServerControl::GetProcessPath(handle.get()) : std::string();
}

/// The processes whose image path starts with `start`, in any letter case.
std::vector<DWORD> Processes(const std::string& start) {
    const Handle snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    PROCESSENTRY32 entry;
    entry.dwSize = sizeof entry;
    std::vector<DWORD> found;
    for (BOOL more = Process32First(snapshot.get(), &entry); more;
         more = Process32Next(snapshot.get(), &entry))
        if (common::EqualsIgnoreCase(ImagePath(entry.th32ProcessID).substr(0, start.size()), start))
            found.push_back(entry.th32ProcessID);
    return found;
}

void KillProcesses(const std::string& start) {
    for (const DWORD process : Processes(start)) {
        const Handle handle(OpenProcess(PROCESS_TERMINATE | SYNCHRONIZE, FALSE, process));
        TerminateProcess(handle.get(), 1);
        WaitForSingleObject(handle.get(), 10'000);
    }
}

bool BelongsTo(HWND window, const std::string& start) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    return common::EqualsIgnoreCase(ImagePath(process).substr(0, start.size()), start);
}

HWND FindWindowOf(const std::string& start, const char* windowClass) {
    return modServerControl::FindWindowWhere(nullptr, windowClass,
                                             [&](HWND window) { return BelongsTo(window, start); });
}

} // namespace

ServerFolder::ServerFolder() {
    // The path as the system knows it: a temporary folder may be named by a short or a linked path.
    std::filesystem::create_directory(temp_ / "server suite");
    path_ = std::filesystem::canonical(temp_ / "server suite").string() + "\\";
    for (const Server server : modServerControl::kServers) {
        const char* name = modServerControl::ComponentOf(server).executable;
        std::filesystem::copy_file(std::filesystem::path(KTOOLS_STANDINS) / name, path_ + name,
                                   std::filesystem::copy_options::overwrite_existing);
    }
    SetEnvironmentVariableA(standin::kQuietVariable, "1");
    modServerControl::KernoPath(path_);
    modServerControl::ServerDetectionMethod(modServerControl::kDetectByTitle);
}

ServerFolder::~ServerFolder() {
    KillAll();
    // A start makes the folder the current one, and a current folder cannot be removed.
    SetCurrentDirectoryA("C:\\");
    modServerControl::KernoPath("");
    modServerControl::ServerDetectionMethod(modServerControl::kDetectByTitle);
}

std::string ServerFolder::ImageOf(Server server) const {
    return path_ + modServerControl::ComponentOf(server).executable;
}

HWND ServerFolder::Launch(Server server, const std::string& fileName) const {
    const std::string path = fileName.empty() ? ImageOf(server) : path_ + fileName;
    if (!std::filesystem::exists(path))
        std::filesystem::copy_file(ImageOf(server), path);
    if (!common::StartProgram({.path = path}))
        return nullptr;
    HWND window = nullptr;
    const char* windowClass = modServerControl::ComponentOf(server).mainWindowClass;
    WaitUntil([&] { return (window = FindWindowOf(path, windowClass)) && IsWindowVisible(window); });
    return window;
}

HWND ServerFolder::MainWindow(Server server) const {
    return FindWindowOf(ImageOf(server), modServerControl::ComponentOf(server).mainWindowClass);
}

HWND ServerFolder::AppWindow(Server server) const {
    return FindWindowOf(ImageOf(server), modServerControl::kApplicationWindowClass);
}

HWND ServerFolder::Child(Server server, const char* windowClass) const {
    return FindWindowExA(MainWindow(server), nullptr, windowClass, nullptr);
}

int ServerFolder::Instances(Server server) const {
    return static_cast<int>(Processes(ImageOf(server)).size());
}

void ServerFolder::Command(Server server, standin::Command command, int number) const {
    Command(MainWindow(server), command, number);
}

void ServerFolder::Command(HWND window, standin::Command command, int number) {
    ASSERT_TRUE(window);
    EXPECT_TRUE(PostMessageA(window, standin::CommandMessage(), static_cast<WPARAM>(command), number));
}

int ServerFolder::DialogCount() const {
    int count = 0;
    modServerControl::FindWindowWhere(nullptr, modServerControl::kDialogClass, [&](HWND window) {
        count += BelongsTo(window, path_) && IsWindowVisible(window);
        return false;
    });
    return count;
}

void ServerFolder::Kill(Server server) const {
    KillProcesses(ImageOf(server));
}

void ServerFolder::KillAll() const {
    KillProcesses(path_);
}

std::string TextOf(HWND window) {
    std::string text(1 << 16, '\0');
    DWORD_PTR read = 0;
    SendMessageTimeoutA(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()),
                        SMTO_ABORTIFHUNG, 5000, &read);
    text.resize(read);
    return text;
}

void TakeRights(HWND window) {
    DWORD id = 0;
    GetWindowThreadProcessId(window, &id);
    const Handle process(OpenProcess(WRITE_DAC, FALSE, id));
    std::array<BYTE, 256> room{};
    auto* list = reinterpret_cast<ACL*>(room.data());
    SID everyone{SID_REVISION, 1, SECURITY_WORLD_SID_AUTHORITY, {SECURITY_WORLD_RID}};
    SECURITY_DESCRIPTOR rights{};
    EXPECT_TRUE(InitializeAcl(list, room.size(), ACL_REVISION));
    EXPECT_TRUE(AddAccessAllowedAce(
        list, ACL_REVISION, PROCESS_QUERY_LIMITED_INFORMATION | PROCESS_TERMINATE | SYNCHRONIZE, &everyone));
    EXPECT_TRUE(InitializeSecurityDescriptor(&rights, SECURITY_DESCRIPTOR_REVISION));
    EXPECT_TRUE(SetSecurityDescriptorDacl(&rights, TRUE, list, FALSE));
    EXPECT_TRUE(SetKernelObjectSecurity(process.get(), DACL_SECURITY_INFORMATION, &rights));
}

void KillOwner(HWND window) {
    DWORD id = 0;
    GetWindowThreadProcessId(window, &id);
    const Handle process(OpenProcess(PROCESS_TERMINATE | SYNCHRONIZE, FALSE, id));
    TerminateProcess(process.get(), 1);
    WaitForSingleObject(process.get(), 10'000);
}

bool SetTextOf(HWND window, const std::string& text) {
    DWORD_PTR answer = 0;
    return SendMessageTimeoutA(window, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()),
                               SMTO_ABORTIFHUNG, 5000, &answer) &&
           answer;
}

} // namespace support
