#include "common/Paths.h"

#include "common/RuntimeError.h"
#include "common/Text.h"

#include <windows.h>

namespace common {

namespace {

/// What `call` writes into a buffer whose size in characters it is told, however long that is; "" when it
/// fails. It returns the length, or a larger number when there is too little room.
template <typename Call> std::wstring Written(const Call& call) {
    std::wstring text(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length = call(text.data(), static_cast<DWORD>(text.size()));
        if (length < text.size()) {
            text.resize(length);
            return text;
        }
        // More than any path has.
        if (text.size() > 40'000)
            return {};
        text.resize(text.size() * 2);
    }
}

} // namespace

std::optional<std::string> NarrowExactly(std::wstring_view text) {
    std::string narrow = ToNarrow(text);
    // Back again, it shows what has become a "?" or a similar letter.
    if (ToWide(narrow) != text)
        return {};
    return narrow;
}

std::string NarrowFolder(const std::wstring& folder, std::size_t longest) {
    const auto fits = [&](const auto& name) { return name && !name->empty() && name->size() <= longest; };
    const auto own = NarrowExactly(folder);
    if (fits(own))
        return *own;
    const auto shortened = NarrowExactly(
        Written([&](wchar_t* text, DWORD room) { return GetShortPathNameW(folder.c_str(), text, room); }));
    if (fits(shortened))
        return *shortened;
    throw RuntimeError(
        kPathFileAccess,
        std::string(own ? "The path of this folder is too long"
                        : "The path of this folder has letters that this Windows' code page lacks") +
            ", and it has no shorter name that would do. Please use another folder, such as "
            "C:\\Kerno Tools.\n\n" +
            ToNarrow(folder));
}

std::string FolderOfProgram() {
    const std::wstring path =
        Written([](wchar_t* text, DWORD room) { return GetModuleFileNameW(nullptr, text, room); });
    return NarrowFolder(path.substr(0, path.rfind(L'\\')), kLongestProgramFolder);
}

} // namespace common
