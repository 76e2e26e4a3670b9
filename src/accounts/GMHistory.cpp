#include "accounts/GMHistory.h"

#include "common/Files.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <functional>

namespace accounts {

namespace {

const std::string kEnding = ".bak";

/// The path without its ending.
std::string Stem(const std::string& path) {
    return path.substr(0, path.rfind('.'));
}

/// True when the text is a date as Now writes it: other files of the folder are the operator's own.
bool IsDate(std::string_view text) {
    constexpr std::string_view kForm = "0000-00-00 00.00.00.000";
    if (text.size() != kForm.size())
        return false;
    for (std::size_t i = 0; i < kForm.size(); ++i) {
        const bool isDigit = text[i] >= '0' && text[i] <= '9';
        if (kForm[i] == '0' ? !isDigit : text[i] != kForm[i])
            return false;
    }
    return true;
}

std::string Now() {
    SYSTEMTIME now{};
    GetLocalTime(&now);
    std::array<char, 40> text{};
    std::snprintf(text.data(), text.size(), "%04u-%02u-%02u %02u.%02u.%02u.%03u", now.wYear, now.wMonth,
                  now.wDay, now.wHour, now.wMinute, now.wSecond, now.wMilliseconds);
    return text.data();
}

} // namespace

std::vector<std::string> Generations(const std::string& path) {
    const std::string stem = Stem(path);
    std::vector<std::string> found;
    const std::string folder = stem.substr(0, stem.rfind('\\') + 1);
    const std::size_t dateAt = stem.size() - folder.size() + 1;
    WIN32_FIND_DATAA entry{};
    const HANDLE search = FindFirstFileA((stem + " *" + kEnding).c_str(), &entry);
    if (search == INVALID_HANDLE_VALUE)
        return found;
    do {
        const std::string_view name = entry.cFileName;
        if (name.size() > dateAt + kEnding.size() &&
            IsDate(name.substr(dateAt, name.size() - dateAt - kEnding.size())))
            found.push_back(folder + entry.cFileName);
    } while (FindNextFileA(search, &entry));
    FindClose(search);
    // The names sort as their dates do.
    std::ranges::sort(found, std::greater());
    return found;
}

void KeepGeneration(const std::string& path, std::string_view text) {
    common::ReplaceFileText(Stem(path) + " " + Now() + kEnding, text);
    const auto generations = Generations(path);
    for (std::size_t i = kGenerations; i < generations.size(); ++i)
        DeleteFileA(generations[i].c_str());
}

} // namespace accounts
