#include "support/TempFolder.h"

#include <windows.h>

#include <filesystem>
#include <fstream>

namespace support {

TempFolder::TempFolder() {
    static int number = 0;
    path_ = (std::filesystem::temp_directory_path() /
             ("kTools" + std::to_string(GetCurrentProcessId()) + "-" + std::to_string(++number)))
                .string();
    std::filesystem::create_directories(path_);
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

} // namespace support
