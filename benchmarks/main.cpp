#include "Bench.h"

#include "common/Files.h"
#include "common/Numbers.h"
#include "common/StartProgram.h"
#include "support/Wait.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <map>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace bench {

namespace {

using Procedures = std::map<std::string, std::function<void()>>;

constexpr std::string_view kHelper = "--helper=";
constexpr std::string_view kLog = "--log=";
constexpr std::string_view kLast = "--last=";
constexpr std::string_view kFigures = "--figures=";

Procedures& Areas() {
    static Procedures areas;
    return areas;
}

Procedures& Helpers() {
    static Procedures helpers;
    return helpers;
}

/// The rows of each name, by amount, for its growth.
struct Measured {
    Size size;
    double value;
};
std::map<std::string, std::map<double, Measured>> previous;

std::string SizeText(const Size& size) {
    return size.amount < 0 ? size.what : common::ThousandsText(size.amount) + " " + size.what;
}

std::string RatioText(double value, double base, const std::string& to) {
    char text[200];
    std::snprintf(text, sizeof text, "%.2f x %s", value / base, to.c_str());
    return text;
}

/// About three digits that count.
std::string ValueText(double value) {
    const int decimals = value < 1 ? 4 : value < 10 ? 2 : value < 100 ? 1 : 0;
    char text[64];
    std::snprintf(text, sizeof text, "%.*f", decimals, value);
    return text;
}

/// The figures of the last release, and of this run: a line each, "area|what|size|unit|value".
std::map<std::string, double> last;
std::FILE* figures = nullptr;
std::string area;
int worse = 0;

void ReadLast(const char* path) {
    const std::string text = common::FileExists(path) ? common::ReadFileText(path) : "";
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find('\n', at), text.size());
        const std::size_t bar = text.rfind('|', end);
        if (bar != std::string::npos && bar > at && bar < end)
            last[text.substr(at, bar - at)] = common::Val(text.substr(bar + 1, end - bar - 1));
        at = end + 1;
    }
}

/// What the figure was at the last release, marked when it was better: by more than runs of one program
/// differ on a machine that does other things as well. Of a rate more is better, of all else less.
std::string LastText(const std::string& key, const std::string& unit, double value) {
    constexpr double kSpread = 1.25;
    const auto found = last.find(key);
    if (found == last.end())
        return "new";
    const bool isWorse =
        unit.ends_with("/s") ? value * kSpread < found->second : value > found->second * kSpread;
    worse += isWorse;
    return ValueText(found->second) + (isWorse ? " WORSE" : "");
}

void PrintRow(const std::string& name, const std::string& size, const std::string& value,
              const std::string& unit, const std::string& before, const std::string& ratio) {
    std::printf("  %-46s  %-24s  %10s %-5s  %-14s  %s\n", name.c_str(), size.c_str(), value.c_str(),
                unit.c_str(), before.c_str(), ratio.c_str());
}

bool RunAreas(const std::string& only) {
    bool complete = true;
    PrintRow("what", "size", "value", "unit", "last release", "ratio");
    for (const auto& [name, run] : Areas()) {
        if (!only.empty() && only != name)
            continue;
        area = name;
        std::printf("%s\n", name.c_str());
        previous.clear();
        try {
            run();
        } catch (const std::exception& error) {
            std::printf("  FAILED: %s\n", error.what());
            complete = false;
        }
    }
    return complete;
}

void PrintAreas() {
    std::printf("The areas are:");
    for (const auto& [name, run] : Areas())
        std::printf(" %s", name.c_str());
    std::printf("\n");
}

} // namespace

Area::Area(const std::string& name, std::function<void()> run) {
    Areas()[name] = std::move(run);
}

Helper::Helper(const std::string& name, std::function<void()> run) {
    Helpers()[name] = std::move(run);
}

void Row(const std::string& name, const Size& size, double value, const std::string& unit,
         const Beside& beside) {
    std::string ratio = beside.name.empty() ? "" : RatioText(value, beside.value, beside.name);
    auto& rows = previous[name];
    if (const auto above = rows.lower_bound(size.amount); above != rows.begin()) {
        const Measured& smaller = std::prev(above)->second;
        ratio += (ratio.empty() ? "" : ", ") +
                 RatioText(value, smaller.value, "that of " + SizeText(smaller.size));
    }
    rows.insert_or_assign(size.amount, Measured{size, value});
    const std::string key = area + "|" + name + "|" + SizeText(size) + "|" + unit;
    PrintRow(name, SizeText(size), ValueText(value), unit, LastText(key, unit, value), ratio);
    if (figures) {
        std::fprintf(figures, "%s|%s\n", key.c_str(), ValueText(value).c_str());
        std::fflush(figures);
    }
}

double Milliseconds(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

double PerRun(int runs, const std::function<void()>& work) {
    constexpr double kEnough = 2000;
    double all = 0;
    int done = 0;
    for (; done < runs && all < kEnough; ++done)
        all += Milliseconds(work);
    return all / done;
}

double MedianOf(int runs, const std::function<void()>& work) {
    std::vector<double> times(static_cast<std::size_t>(runs));
    for (double& time : times)
        time = Milliseconds(work);
    return Median(times);
}

double Median(std::vector<double> values) {
    std::ranges::sort(values);
    return values.at(values.size() / 2);
}

void WaitFor(const char* what, const std::function<bool()>& condition) {
    if (!support::WaitUntil(condition, std::chrono::minutes(1)))
        throw std::runtime_error(std::string("waited in vain for ") + what);
}

Process::Process(const std::string& commandLine) {
    auto started = common::StartProgram({.commandLine = commandLine});
    if (!started)
        throw std::runtime_error("does not start: " + commandLine);
    process_ = std::move(*started);
}

Process::~Process() {
    TerminateProcess(process_.get(), 0);
    WaitForSingleObject(process_.get(), 10'000);
}

std::string HelperCommand(const std::string& name) {
    char program[MAX_PATH];
    GetModuleFileNameA(nullptr, program, MAX_PATH);
    return "\"" + std::string(program) + "\" " + std::string(kHelper) + name;
}

/// ktools_bench [--log=FILE] [--last=FILE] [--figures=FILE] [AREA]: prints the table, of one area only when
/// it is named, beside the figures of the last release; writes those of this run.
int Main(int count, char** arguments) {
    std::string only;
    for (int i = 1; i < count; ++i) {
        const std::string_view argument = arguments[i];
        if (argument.starts_with(kHelper)) {
            Helpers().at(std::string(argument.substr(kHelper.size())))();
            return 0;
        }
        if (argument.starts_with(kLast))
            ReadLast(argument.substr(kLast.size()).data());
        else if (argument.starts_with(kFigures))
            figures = std::fopen(argument.substr(kFigures.size()).data(), "w");
        else if (!argument.starts_with(kLog))
            only = argument;
        else if (!std::freopen(argument.substr(kLog.size()).data(), "w", stdout))
            return 2;
    }
    std::setvbuf(stdout, nullptr, _IONBF, 0);
    int result = 2;
    if (only.empty() || Areas().contains(only))
        result = RunAreas(only) ? 0 : 1;
    else
        PrintAreas();
    if (worse > 0)
        std::printf("%d figures are worse than at the last release\n", worse);
    // The closing line that a runner looks for, the same as that of the test programs.
    std::printf("test program ended with %d\n", result);
    return result;
}

} // namespace bench

int main(int count, char** arguments) {
    return bench::Main(count, arguments);
}
