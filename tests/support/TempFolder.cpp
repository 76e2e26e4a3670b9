#include "support/TempFolder.h"

#include "common/Files.h"
#include "common/StartProgram.h"
#include "support/Wait.h"

#include <windows.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <future>
#include <stdexcept>

namespace support {

TempFolder::TempFolder() {
    static int number = 0;
    // Another process may have had the same number, and left something.
    do
        path_ = (std::filesystem::temp_directory_path() /
                 ("kTools" + std::to_string(GetCurrentProcessId()) + "-" + std::to_string(++number)))
                    .string();
    while (!std::filesystem::create_directory(path_));
}

TempFolder::~TempFolder() {
    std::error_code ignored;
    // A read-only file cannot be deleted.
    for (const auto& entry : std::filesystem::recursive_directory_iterator(path_, ignored))
        SetFileAttributesA(entry.path().string().c_str(), FILE_ATTRIBUTE_NORMAL);
    std::filesystem::remove_all(path_, ignored);
}

void WriteFile(const std::string& path, std::string_view text) {
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream(path, std::ios::binary) << text;
}

bool WorksInAMomentsLock(const std::string& path, const std::function<bool()>& works) {
    constexpr int kMoments = 10;
    for (int moment = 0; moment < kMoments; ++moment) {
        auto lock = common::OpenFile(path, GENERIC_READ, OPEN_EXISTING, 0);
        const auto letGo = std::async(std::launch::async, [&] {
            Sleep(30);
            lock.reset();
        });
        if (works())
            return true;
    }
    return false;
}

namespace {

/// The path as the system below Wine has it; "" on Windows.
std::string UnixPath(const std::string& path) {
    using Translate = char*(CDECL*)(const wchar_t*);
    const auto translate = reinterpret_cast<Translate>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("kernel32"), "wine_get_unix_file_name")));
    return translate ? translate(std::filesystem::path(path).wstring().c_str()) : std::string();
}

/// Runs the command until the condition holds. Raises std::runtime_error when it does not.
void RunUntil(const std::string& command, const std::function<bool()>& done) {
    if (!common::StartProgram({.commandLine = command}) || !WaitUntil(done))
        throw std::runtime_error("this did not do what it should: " + command);
}

} // namespace

void LinkFolder(const std::string& link, const std::string& target) {
    const std::string from = UnixPath(link);
    RunUntil(from.empty() ? "cmd /c mklink /J \"" + link + "\" \"" + target + "\""
                          : "Z:\\bin\\ln -s \"" + UnixPath(target) + "\" \"" + from + "\"",
             [&] { return common::FolderExists(link); });
}

void UnlinkFolder(const std::string& link) {
    const std::string from = UnixPath(link);
    RunUntil(from.empty() ? "cmd /c rmdir \"" + link + "\"" : "Z:\\bin\\rm \"" + from + "\"",
             [&] { return GetFileAttributesA(link.c_str()) == INVALID_FILE_ATTRIBUTES; });
}

} // namespace support
