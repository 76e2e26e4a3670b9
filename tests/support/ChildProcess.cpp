#include "support/ChildProcess.h"

#include "support/TempFolder.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <future>
#include <map>
#include <random>
#include <stdexcept>
#include <string_view>
#include <thread>
#include <vector>

namespace support {

namespace {

using EventHandle = common::Handle<HANDLE, CloseHandle>;

constexpr std::string_view kChild = "--child=";
constexpr DWORD kLimit = 30'000;

auto& Entries() {
    static std::map<std::string, std::function<void(const std::string&)>> entries;
    return entries;
}

std::string ReadyEventName(DWORD process) {
    return "kToolsChildReady" + std::to_string(process);
}

EventHandle ReadyEvent(DWORD process) {
    return EventHandle(CreateEventA(nullptr, TRUE, FALSE, ReadyEventName(process).c_str()));
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
    const std::string command =
        quote + program + "\" \"" + std::string(kChild) + name + "\" \"" + folder + quote;
    auto started = common::StartProgram({.commandLine = command});
    if (!started)
        throw std::runtime_error("no child process " + name);
    process_ = std::move(*started);
    const auto ready = ReadyEvent(GetProcessId(process_.get()));
    const HANDLE readyOrGone[] = {ready.get(), process_.get()};
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

void KillDuring(const std::string& name, int times, const std::function<void(const std::string&)>& prepare,
                const std::function<void(const std::string&)>& check, std::chrono::milliseconds latest) {
    // Most of a kill is the start of its process, which keeps no processor busy.
    constexpr unsigned kLanes = 4;
    std::atomic<int> left = times;
    const auto killInTurn = [&](const std::string& folder, unsigned lane) {
        std::mt19937 random(lane);
        std::uniform_int_distribution<long long> microseconds(0, std::chrono::microseconds(latest).count());
        prepare(folder);
        while (left-- > 0 && !testing::Test::HasFailure()) {
            ChildProcess child(name, folder);
            // Finer than the scheduler's clock ticks, so that the kills fall on all places of a rewrite. A
            // long wait leaves the processors to the children.
            const auto end =
                std::chrono::steady_clock::now() + std::chrono::microseconds(microseconds(random));
            std::this_thread::sleep_until(end - std::chrono::milliseconds(20));
            while (std::chrono::steady_clock::now() < end)
                YieldProcessor();
            EXPECT_TRUE(child.Running()) << "the child ended by itself";
            child.Kill();
            check(folder);
        }
    };
    const std::vector<TempFolder> folders(kLanes);
    std::vector<std::future<void>> lanes;
    for (unsigned lane = 0; lane < kLanes; ++lane)
        lanes.push_back(std::async(std::launch::async, killInTurn, folders[lane].Path(), lane));
    for (auto& lane : lanes)
        lane.get();
}

} // namespace support
