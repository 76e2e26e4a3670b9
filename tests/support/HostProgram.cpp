#include "support/HostProgram.h"

#include "common/Numbers.h"
#include "common/StartProgram.h"
#include "support/Database.h"
#include "support/TempFolder.h"
#include "support/Wait.h"

#include <stdexcept>

namespace support {

namespace {

struct Program {
    const char* name;
    const char* host; ///< null for the one that is made here
};
constexpr Program kPrograms[] = {{"mysql", "mariadb"},
                                 {"mysqldump", "mariadb-dump"},
                                 {"mysqlcheck", "mariadb-check"},
                                 {"mysqladmin", "mariadb-admin"},
                                 {"net", nullptr}};
constexpr std::chrono::minutes kLimit{2};

std::string ThisProgram() {
    std::string path(MAX_PATH, '\0');
    path.resize(GetModuleFileNameA(nullptr, path.data(), MAX_PATH));
    return path;
}

/// The process; none is told of a program of this computer.
common::ProcessHandle Launch(const std::string& command, const std::string& folder = {}) {
    auto process = common::StartProgram({.commandLine = command, .folder = folder});
    if (!process)
        throw std::runtime_error("not started: " + command);
    return std::move(*process);
}

int RunOnHost(const std::string& program, int count, char** arguments) {
    const TempFolder folder;
    const std::string result = folder / "status";
    // Newer programs refuse a server without encryption unless told.
    std::string command =
        KTOOLS_HOST_PROGRAM " \"" + result + "\" " + program + " --no-defaults --protocol=tcp --skip-ssl";
    for (int i = 1; i < count; ++i)
        command += std::string(" \"") + arguments[i] + "\"";
    Launch(command);
    const int status = WaitUntil([&] { return common::FileExists(result); }, kLimit)
                           ? static_cast<int>(common::Val(common::ReadFileText(result)))
                           : 1;
    if (status != 0 && common::FileExists(result + ".log"))
        std::printf("%s\n%s\n", command.c_str(), common::ReadFileText(result + ".log").c_str());
    return status;
}

} // namespace

void MakeHostPrograms(const std::string& folder) {
    for (const Program& program : kPrograms)
        CopyFileA(ThisProgram().c_str(), (folder + "\\" + program.name + ".exe").c_str(), FALSE);
}

bool RunAsHostProgram(int count, char** arguments, int& status) {
    const std::string name = std::filesystem::path(ThisProgram()).stem().string();
    const auto* const program = std::ranges::find(kPrograms, name, &Program::name);
    if (program == std::end(kPrograms))
        return false;
    status = 0;
    if (program->host)
        status = RunOnHost(program->host, count, arguments);
    else if (count > 1 && std::string(arguments[1]) == "start")
        LetServerStart();
    else
        HoldServer();
    return true;
}

int RunBatch(const std::string& folder, const std::string& batch) {
    const common::ProcessHandle process = Launch("cmd /c \"" + batch + "\"", folder);
    DWORD status = 1;
    if (WaitForSingleObject(process.get(), static_cast<DWORD>(std::chrono::milliseconds(kLimit).count())) !=
        WAIT_OBJECT_0)
        TerminateProcess(process.get(), 1);
    GetExitCodeProcess(process.get(), &status);
    return static_cast<int>(status);
}

} // namespace support
