#pragma once

#include <chrono>
#include <functional>
#include <string>

namespace bench {

/// A group of measurements, run and printed under its name. Declared as a global object beside its procedure.
class Area {
public:
    Area(const std::string& name, std::function<void()> run);
};

/// Prints one row of the table.
void Row(const std::string& name, double value, const std::string& unit);

/// Milliseconds that `work` takes.
double Milliseconds(const std::function<void()>& work);

/// What the program does instead of measuring when an area starts it as its helper.
class Helper {
public:
    Helper(const std::string& name, std::function<void()> run);
};

/// Starts this program once more as the helper `name`, which runs until the object goes.
class HelperProcess {
public:
    explicit HelperProcess(const std::string& name);
    ~HelperProcess();
    HelperProcess(const HelperProcess&) = delete;
    HelperProcess& operator=(const HelperProcess&) = delete;

private:
    void* process_ = nullptr;
};

} // namespace bench
