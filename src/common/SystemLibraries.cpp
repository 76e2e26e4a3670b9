#include "common/SystemLibraries.h"

#include <delayimp.h>

#include <string>

extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace {

/// What stands at this distance from the start of the program.
template <typename T> T* At(DWORD_PTR offset) {
    return reinterpret_cast<T*>(reinterpret_cast<char*>(&__ImageBase) + offset);
}

} // namespace

namespace common {

HMODULE LoadSystemLibrary(std::string_view name) {
    std::wstring path(MAX_PATH, L'\0');
    path.resize(GetSystemDirectoryW(path.data(), MAX_PATH));
    path.append(L"\\").append(name.begin(), name.end());
    // What the library itself needs is looked for beside it, not beside us.
    return LoadLibraryExW(path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
}

} // namespace common

/// Called by the import libraries that cmake/Delayed.cmake makes, by the name that they know it under.
extern "C" FARPROC WINAPI __delayLoadHelper2(PCImgDelayDescr library, FARPROC* slot) {
    const char* const name = At<char>(library->rvaDLLName);
    HMODULE& module = *At<HMODULE>(library->rvaHmod);
    if (!module)
        module = common::LoadSystemLibrary(name);
    const auto index = slot - At<FARPROC>(library->rvaIAT);
    const auto& entry = At<IMAGE_THUNK_DATA>(library->rvaINT)[index];
    const char* const function = At<IMAGE_IMPORT_BY_NAME>(entry.u1.AddressOfData)->Name;
    const FARPROC found = module ? GetProcAddress(module, function) : nullptr;
    // As the loader does at the start of a program; the caller cannot do without it.
    if (!found)
        FatalAppExitA(0, (std::string("This Windows lacks ") + function + " of " + name + ".").c_str());
    return *slot = found;
}
