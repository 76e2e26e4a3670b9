#include "Bench.h"

#include <windows.h>

#include <cstdio>
#include <map>
#include <stdexcept>
#include <string_view>

namespace bench {

namespace {

using Procedures = std::map<std::string, std::function<void()>>;

constexpr std::string_view kHelper = "--helper=";
constexpr std::string_view kLog = "--log=";

Procedures& Areas() {
    static Procedures areas;
    return areas;
}

Procedures& Helpers() {
    static Procedures helpers;
    return helpers;
}

bool RunAreas(std::string_view only) {
    bool complete = true;
    for (const auto& [name, run] : Areas()) {
        if (!only.empty() && only != name)
            continue;
        std::printf("%s\n", name.c_str());
        try {
            run();
        } catch (const std::exception& error) {
            std::printf("  FAILED: %s\n", error.what());
            complete = false;
        }
    }
    return complete;
}

} // namespace

Area::Area(const std::string& name, std::function<void()> run) {
    Areas()[name] = std::move(run);
}

Helper::Helper(const std::string& name, std::function<void()> run) {
    Helpers()[name] = std::move(run);
}

void Row(const std::string& name, double value, const std::string& unit) {
    std::printf("  %-72s %12.3f %s\n", name.c_str(), value, unit.c_str());
}

double Milliseconds(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

HelperProcess::HelperProcess(const std::string& name) {
    char program[MAX_PATH];
    GetModuleFileNameA(nullptr, program, MAX_PATH);
    std::string command = "\"" + std::string(program) + "\" " + std::string(kHelper) + name;
    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION started{};
    if (!CreateProcessA(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                        &started))
        throw std::runtime_error("the helper " + name + " does not start");
    CloseHandle(started.hThread);
    process_ = started.hProcess;
}

HelperProcess::~HelperProcess() {
    TerminateProcess(process_, 0);
    WaitForSingleObject(process_, INFINITE);
    CloseHandle(process_);
}

/// ktools_bench [--log=FILE] [AREA]: prints the table, of one area only when it is named.
int Main(int count, char** arguments) {
    std::string only;
    for (int i = 1; i < count; ++i) {
        const std::string_view argument = arguments[i];
        if (argument.starts_with(kHelper)) {
            Helpers().at(std::string(argument.substr(kHelper.size())))();
            return 0;
        }
        if (!argument.starts_with(kLog))
            only = argument;
        else if (!std::freopen(argument.substr(kLog.size()).data(), "w", stdout))
            return 2;
    }
    std::setvbuf(stdout, nullptr, _IONBF, 0);
    const int result = RunAreas(only) ? 0 : 1;
    // The closing line that a runner looks for, the same as that of the test programs.
    std::printf("test program ended with %d\n", result);
    return result;
}

} // namespace bench

int main(int count, char** arguments) {
    return bench::Main(count, arguments);
}
