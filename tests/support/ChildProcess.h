#pragma once

#include "common/StartProgram.h"

#include <chrono>
#include <functional>
#include <string>

namespace support {

/// What the test program does instead of its tests when it is started as a child. Declared as a global object
/// beside the tests that start it.
class ChildEntry {
public:
    ChildEntry(const std::string& name, std::function<void(const std::string& folder)> run);
};

/// The test program, started once more to run the entry `name` on `folder`. Ends with the object.
class ChildProcess {
public:
    /// Returns when the entry is about to run. Throws std::runtime_error when it does not get that far.
    ChildProcess(const std::string& name, const std::string& folder);
    ~ChildProcess();

    /// Ends it at once, wherever it is, and returns when it is gone.
    void Kill();
    bool Running() const;

private:
    common::ProcessHandle process_;
};

/// Starts the entry `times` times, each time on a folder that `prepare` has filled, and kills it at a random
/// moment up to `latest`; `check` looks at what every kill left, and the next child goes on from
/// there. The entry must go on until it is killed. A few folders are worked on side by side, so both may be
/// called by several threads at once.
void KillDuring(const std::string& name, int times, const std::function<void(const std::string&)>& prepare,
                const std::function<void(const std::string&)>& check,
                std::chrono::milliseconds latest = std::chrono::milliseconds(8));

/// Runs the entry that the program's arguments ask for; false when they ask for none.
bool RunAsChild(int count, char** arguments);

} // namespace support
