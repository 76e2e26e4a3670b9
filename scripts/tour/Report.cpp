#include "Report.h"

#include <windows.h>

#include <cstdio>

namespace {

constexpr DWORD kAppearsWithin = 30000;

FILE* logFile = nullptr;
int failures = 0;

} // namespace

bool BeginReport(const std::string& folder) {
    logFile = std::fopen((folder + "\\tour.log").c_str(), "w");
    return logFile != nullptr;
}

int EndReport() {
    std::fprintf(logFile, "tour ended with %d\n", failures);
    std::fclose(logFile);
    return failures;
}

void Log(const char* format, const std::string& text) {
    std::fprintf(logFile, format, text.c_str());
    std::fflush(logFile);
}

void Failed(const std::string& what) {
    ++failures;
    Log("FAILED: %s\n", what);
}

bool WaitUntil(const std::function<bool()>& condition) {
    for (const ULONGLONG start = GetTickCount64(); GetTickCount64() - start < kAppearsWithin; Sleep(20)) {
        if (condition())
            return true;
    }
    return false;
}
