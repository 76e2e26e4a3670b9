#pragma once

#include "common/StartProgram.h"

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

namespace bench {

/// A group of measurements, run and printed under its name. Declared as a global object beside its procedure.
class Area {
public:
    Area(const std::string& name, std::function<void()> run);
};

/// How much there was of what a measurement depends on: 1,000 accounts. Without an amount just a text.
struct Size {
    Size(const char* text) : what(text) {}
    Size(double number, const std::string& unit) : amount(number), what(unit) {}

    double amount = -1;
    std::string what;
};

/// What a value is compared with: a way to do the same without the tool, measured in the same run.
struct Beside {
    double value = 0;
    std::string name;
};

/// Prints one row of the table. Its ratios are that to `beside`, and that to the row of the same name and
/// the next smaller amount before it in the area.
void Row(const std::string& name, const Size& size, double value, const std::string& unit,
         const Beside& beside = {});

/// Milliseconds that `work` takes: once, each of so many times in a row (fewer when they take longer than two
/// seconds), and the middle one of so many.
double Milliseconds(const std::function<void()>& work);
double PerRun(int runs, const std::function<void()>& work);
double MedianOf(int runs, const std::function<void()>& work);
double Median(std::vector<double> values);

/// Dispatches messages until the condition holds; throws when it does not come to hold.
void WaitFor(const char* what, const std::function<bool()>& condition);

/// What the program does instead of measuring when an area starts it as its helper.
class Helper {
public:
    Helper(const std::string& name, std::function<void()> run);
};

/// Another program, which runs until the object goes.
class Process {
public:
    explicit Process(const std::string& commandLine);
    ~Process();
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    DWORD Id() const { return GetProcessId(process_.get()); }

private:
    common::ProcessHandle process_;
};

/// The command line that starts this program once more as the helper `name`.
std::string HelperCommand(const std::string& name);

} // namespace bench
