#include "common/Files.h"

#include "common/RuntimeError.h"

#include <algorithm>

namespace common {

namespace {

// Deleting included, or a second copy of the tool that reads a file would keep this one from replacing it.
constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

using FindHandle = Handle<HANDLE, FindClose>;

FileHandle Open(const std::string& path, DWORD access, DWORD share, DWORD disposition) {
    const HANDLE file =
        CreateFileA(path.c_str(), access, share, nullptr, disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        RaiseFileError(GetLastError(), path);
    return FileHandle(file);
}

void Write(HANDLE file, std::string_view text, const std::string& path) {
    while (!text.empty()) {
        const auto part = text.substr(0, 1u << 30);
        DWORD written = 0;
        if (!WriteFile(file, part.data(), static_cast<DWORD>(part.size()), &written, nullptr))
            RaiseFileError(GetLastError(), path);
        text.remove_prefix(written);
    }
}

/// False when the file cannot be moved; GetLastError tells why.
bool MoveOver(const std::string& from, const std::string& to) {
    // Virus scanners and indexers hold a fresh file for a moment, and their moment must not fail a save.
    constexpr int kAttempts = 5;
    constexpr DWORD kPause = 20;
    for (int attempt = 1;; ++attempt) {
        if (MoveFileExA(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING))
            return true;
        const DWORD code = GetLastError();
        if (attempt == kAttempts || (code != ERROR_SHARING_VIOLATION && code != ERROR_ACCESS_DENIED))
            return false;
        Sleep(kPause);
    }
}

std::string FolderOfProgram() {
    std::string path(MAX_PATH, '\0');
    path.resize(GetModuleFileNameA(nullptr, path.data(), MAX_PATH));
    return path.substr(0, path.rfind('\\'));
}

std::string& ProgramFolderSlot() {
    static std::string folder = FolderOfProgram();
    return folder;
}

} // namespace

bool FileExists(const std::string& path) {
    constexpr DWORD kNotNormal = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;
    WIN32_FIND_DATAA found;
    const HANDLE search = FindFirstFileA(path.c_str(), &found);
    if (search == INVALID_HANDLE_VALUE)
        return false;
    const FindHandle owner(search);
    // A pattern can match several; the first normal one answers.
    do {
        if (!(found.dwFileAttributes & kNotNormal))
            return true;
    } while (FindNextFileA(search, &found));
    return false;
}

bool FolderExists(const std::string& path) {
    const DWORD attributes = GetFileAttributesA(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY);
}

void MakeFolder(const std::string& path) {
    if (!CreateDirectoryA(path.c_str(), nullptr))
        RaiseFileError(GetLastError(), path);
}

void RequireFolder(const std::string& path) {
    if (!FolderExists(path))
        MakeFolder(path);
}

std::string ReadFileText(const std::string& path) {
    const FileHandle file = Open(path, GENERIC_READ, kShareAll, OPEN_EXISTING);
    LARGE_INTEGER size;
    if (!GetFileSizeEx(file.get(), &size))
        RaiseFileError(GetLastError(), path);
    std::string text(static_cast<std::size_t>(size.QuadPart), '\0');
    std::size_t have = 0;
    while (have < text.size()) {
        DWORD read = 0;
        const auto want = static_cast<DWORD>(std::min<std::size_t>(text.size() - have, 1u << 30));
        if (!ReadFile(file.get(), text.data() + have, want, &read, nullptr))
            RaiseFileError(GetLastError(), path);
        if (read == 0)
            break;
        have += read;
    }
    text.resize(have);
    return text;
}

void ReplaceFileText(const std::string& path, std::string_view text) {
    // FileExists does not see hidden and system files; a caller that makes a missing file must not lose one.
    constexpr DWORD kNotOurs = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;
    const DWORD attributes = GetFileAttributesA(path.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & kNotOurs))
        RaiseFileError(ERROR_ACCESS_DENIED, path);

    const std::string fresh = path + ".new";
    try {
        const FileHandle file = Open(fresh, GENERIC_WRITE, 0, CREATE_ALWAYS);
        Write(file.get(), text, fresh);
        // On the disk before it takes the name, or a power cut could leave the name on an empty file.
        FlushFileBuffers(file.get());
    } catch (const RuntimeError&) {
        DeleteFileA(fresh.c_str());
        throw;
    }
    if (!MoveOver(fresh, path)) {
        const DWORD code = GetLastError();
        DeleteFileA(fresh.c_str());
        RaiseFileError(code, path);
    }
}

void AppendFileText(const std::string& path, std::string_view text) {
    const FileHandle file = Open(path, FILE_APPEND_DATA, kShareAll, OPEN_ALWAYS);
    Write(file.get(), text, path);
}

const std::string& ProgramFolder() {
    return ProgramFolderSlot();
}
void ProgramFolder(const std::string& folder) {
    ProgramFolderSlot() = folder;
}

} // namespace common
