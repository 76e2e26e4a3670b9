#include "support/ChildProcess.h"

#include <gtest/gtest.h>

#include <chrono>
#include <map>
#include <random>
#include <stdexcept>
#include <string_view>

namespace support {

namespace {

constexpr std::string_view kChild = "--child=";
constexpr DWORD kLimit = 30'000;

auto& Entries() {
    static std::map<std::string, std::function<void(const std::string&)>> entries;
    return entries;
}

std::string ReadyEventName(DWORD process) {
    return "kToolsChildReady" + std::to_string(process);
}

common::FileHandle ReadyEvent(DWORD process) {
    return common::FileHandle(CreateEventA(nullptr, TRUE, FALSE, ReadyEventName(process).c_str()));
}

} // namespace

ChildEntry::ChildEntry(const std::string& name, std::function<void(const std::string&)> run) {
    Entries()[name] = std::move(run);
}

bool RunAsChild(int count, char** arguments) {
    if (count < 3 || !std::string_view(arguments[1]).starts_with(kChild))
        return false;
    const auto& run = Entries().at(arguments[1] + kChild.size());
    SetEvent(ReadyEvent(GetCurrentProcessId()).get());
    run(arguments[2]);
    return true;
}

ChildProcess::ChildProcess(const std::string& name, const std::string& folder) {
    char program[MAX_PATH];
    GetModuleFileNameA(nullptr, program, MAX_PATH);
    const std::string quote = "\"";
    std::string command = quote + program + "\" \"" + std::string(kChild) + name + "\" \"" + folder + quote;
    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION started{};
    if (!CreateProcessA(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                        &started))
        throw std::runtime_error("no child process " + name);
    const common::FileHandle thread(started.hThread);
    process_.reset(started.hProcess);
    const auto ready = ReadyEvent(started.dwProcessId);
    const HANDLE readyOrGone[] = {ready.get(), started.hProcess};
    if (WaitForMultipleObjects(2, readyOrGone, FALSE, kLimit) != WAIT_OBJECT_0) {
        Kill();
        throw std::runtime_error("child process did not start " + name);
    }
}

ChildProcess::~ChildProcess() {
    Kill();
}

void ChildProcess::Kill() {
    TerminateProcess(process_.get(), 1);
    WaitForSingleObject(process_.get(), kLimit);
}

bool ChildProcess::Running() const {
    return WaitForSingleObject(process_.get(), 0) == WAIT_TIMEOUT;
}

void KillDuring(const std::string& name, const std::string& folder, int times,
                const std::function<void()>& check) {
    std::mt19937 random(1);
    std::uniform_int_distribution<int> microseconds(0, 20'000);
    for (int i = 0; i < times; ++i) {
        ChildProcess child(name, folder);
        // Finer than the scheduler's clock ticks, so that the kills fall on all places of a rewrite.
        const auto end = std::chrono::steady_clock::now() + std::chrono::microseconds(microseconds(random));
        while (std::chrono::steady_clock::now() < end)
            YieldProcessor();
        ASSERT_TRUE(child.Running()) << "the child ended by itself, kill " << i;
        child.Kill();
        check();
        if (testing::Test::HasFailure())
            FAIL() << "after kill " << i;
    }
}

} // namespace support
