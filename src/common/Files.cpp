#include "common/Files.h"

#include "common/Paths.h"
#include "common/Persist.h"
#include "common/RuntimeError.h"

#include <algorithm>
#include <cstdlib>

namespace common {

namespace {

using FindHandle = Handle<HANDLE, FindClose>;

void Write(HANDLE file, std::string_view text, const std::string& path) {
    while (!text.empty()) {
        const auto part = text.substr(0, 1u << 30);
        DWORD written = 0;
        if (!WriteFile(file, part.data(), static_cast<DWORD>(part.size()), &written, nullptr))
            RaiseFileError(GetLastError(), path);
        if (written == 0)
            RaiseFileError(ERROR_DISK_FULL, path);
        text.remove_prefix(written);
    }
}

/// False when the file cannot be moved; GetLastError tells why.
bool MoveOver(const std::string& from, const std::string& to) {
    return Persist([&] { return MoveFileExA(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING) != 0; },
                   [](DWORD code) { return code == ERROR_SHARING_VIOLATION || code == ERROR_ACCESS_DENIED; });
}

/// All that a pattern matches. Nothing when the search fails.
std::optional<std::vector<FolderEntry>> Matching(const std::string& pattern) {
    WIN32_FIND_DATAA found;
    const auto search = Own<FindHandle>(FindFirstFileA(pattern.c_str(), &found));
    if (!search)
        return {};
    std::vector<FolderEntry> entries;
    do {
        entries.push_back({found.cFileName, found.dwFileAttributes});
    } while (FindNextFileA(search.get(), &found));
    return entries;
}

constexpr std::string_view kFreshMark = ".kTools-";
constexpr std::string_view kFreshEnding = ".new";

std::string FreshName(const std::string& path, unsigned number) {
    return path + std::string(kFreshMark) + std::to_string(GetCurrentProcessId()) + "-" +
           std::to_string(number) + std::string(kFreshEnding);
}

bool IsAlive(DWORD process) {
    const Handle<HANDLE, CloseHandle> handle(OpenProcess(SYNCHRONIZE, FALSE, process));
    return handle ? WaitForSingleObject(handle.get(), 0) == WAIT_TIMEOUT
                  : GetLastError() == ERROR_ACCESS_DENIED;
}

/// Deletes what a copy of the tool that was killed on its way to replace `path` has left beside it.
void DeleteLeftovers(const std::string& path) {
    const std::string folder = path.substr(0, path.rfind('\\') + 1);
    const auto left = Matching(path + std::string(kFreshMark) + "*" + std::string(kFreshEnding));
    for (const FolderEntry& entry : left.value_or(std::vector<FolderEntry>{})) {
        const auto mark = entry.name.rfind(kFreshMark);
        if (mark == std::string::npos)
            continue;
        const DWORD process = std::strtoul(entry.name.c_str() + mark + kFreshMark.size(), nullptr, 10);
        if (process != GetCurrentProcessId() && !IsAlive(process))
            DeleteFileA((folder + entry.name).c_str());
    }
}

std::string& ProgramFolderSlot() {
    static std::string folder = FolderOfProgram();
    return folder;
}

} // namespace

FileHandle TryOpenFile(const std::string& path, DWORD access, DWORD disposition, DWORD share) {
    return Own<FileHandle>(
        CreateFileA(path.c_str(), access, share, nullptr, disposition, FILE_ATTRIBUTE_NORMAL, nullptr));
}

FileHandle OpenFile(const std::string& path, DWORD access, DWORD disposition, DWORD share) {
    FileHandle file = TryOpenFile(path, access, disposition, share);
    if (!file)
        RaiseFileError(GetLastError(), path);
    return file;
}

std::size_t ReadFrom(const FileHandle& file, char* place, std::size_t size, const std::string& path) {
    DWORD read = 0;
    const auto want = static_cast<DWORD>(std::min<std::size_t>(size, 1u << 30));
    if (!ReadFile(file.get(), place, want, &read, nullptr))
        RaiseFileError(GetLastError(), path);
    return read;
}

bool FileExists(const std::string& path) {
    constexpr DWORD kNotNormal = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;
    // Mostly it is there, and need not be looked for among all that lies beside it.
    const DWORD attributes = GetFileAttributesA(path.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES && !(attributes & kNotNormal))
        return true;
    // A pattern can match several; the first normal one answers.
    const auto found = Matching(path);
    return found && std::ranges::any_of(
                        *found, [](const FolderEntry& entry) { return !(entry.attributes & kNotNormal); });
}

bool FolderExists(const std::string& path) {
    const DWORD attributes = GetFileAttributesA(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY);
}

std::optional<std::vector<FolderEntry>> EntriesOf(const std::string& folder) {
    auto entries = Matching(folder + (folder.ends_with('\\') ? "*" : "\\*"));
    if (entries)
        std::erase_if(*entries,
                      [](const FolderEntry& entry) { return entry.name == "." || entry.name == ".."; });
    return entries;
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
    FileHandle file;
    const auto open = [&] {
        file = TryOpenFile(path, GENERIC_READ, OPEN_EXISTING);
        return file != nullptr;
    };
    if (!Persist(open, [](DWORD code) { return code == ERROR_SHARING_VIOLATION; }))
        RaiseFileError(GetLastError(), path);
    LARGE_INTEGER size;
    if (!GetFileSizeEx(file.get(), &size))
        RaiseFileError(GetLastError(), path);
    // Far more than any file that the tool reads; in a 32-bit program no size beyond it can be told.
    constexpr LONGLONG kLargest = 1 << 30;
    if (size.QuadPart > kLargest)
        RaiseFileError(ERROR_FILE_TOO_LARGE, path);
    std::string text(static_cast<std::size_t>(size.QuadPart), '\0');
    std::size_t have = 0;
    while (have < text.size()) {
        const std::size_t read = ReadFrom(file, text.data() + have, text.size() - have, path);
        if (read == 0)
            break;
        have += read;
    }
    text.resize(have);
    return text;
}

FileReplacement::FileReplacement(const std::string& path) : path_(path) {
    // FileExists does not see hidden and system files; a caller that makes a missing file must not lose one.
    constexpr DWORD kNotOurs = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;
    const DWORD attributes = GetFileAttributesA(path.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & kNotOurs))
        RaiseFileError(ERROR_ACCESS_DENIED, path);
    DeleteLeftovers(path);
    for (unsigned number = 1; !file_; ++number) {
        const std::string name = FreshName(path, number);
        file_ = TryOpenFile(name, GENERIC_WRITE, CREATE_NEW, 0);
        if (file_)
            fresh_ = name;
        else if (GetLastError() != ERROR_FILE_EXISTS)
            RaiseFileError(GetLastError(), path);
    }
}

FileReplacement::~FileReplacement() {
    file_.reset();
    if (!fresh_.empty())
        DeleteFileA(fresh_.c_str());
}

void FileReplacement::Write(std::string_view text) {
    common::Write(file_.get(), text, path_);
}

void FileReplacement::Commit() {
    // On the disk before it takes the name, or a power cut could leave the name on an empty file.
    if (!FlushFileBuffers(file_.get()))
        RaiseFileError(GetLastError(), path_);
    file_.reset();
    if (!MoveOver(fresh_, path_))
        RaiseFileError(GetLastError(), path_);
    fresh_.clear();
}

void ReplaceFileText(const std::string& path, std::string_view text) {
    FileReplacement replacement(path);
    replacement.Write(text);
    replacement.Commit();
}

void AppendFileText(const std::string& path, std::string_view text) {
    const FileHandle file = OpenFile(path, FILE_APPEND_DATA, OPEN_ALWAYS);
    Write(file.get(), text, path);
}

const std::string& ProgramFolder() {
    return ProgramFolderSlot();
}
void ProgramFolder(const std::string& folder) {
    ProgramFolderSlot() = folder;
}

} // namespace common
