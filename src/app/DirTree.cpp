#include "app/DirTree.h"

#include "common/Files.h"
#include "common/Paths.h"
#include "common/Text.h"

#include <algorithm>
#include <vector>

namespace {

std::wstring Below(const std::wstring& folder, const std::wstring& name) {
    return folder + (folder.ends_with(L'\\') ? L"" : L"\\") + name;
}

/// Whether something of that kind (FILE_ATTRIBUTE_DIRECTORY or 0) answers to the path.
bool IsThere(const std::wstring& path, DWORD kind) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == kind;
}

/// -1, 0 or 1, without regard to letter case; the system's own order.
int Compare(const std::wstring& a, const std::wstring& b) {
    return lstrcmpiW(a.c_str(), b.c_str());
}

/// Names of the folders in a folder, sorted. Raises as DirTree::Path does.
std::vector<std::wstring> FoldersIn(const std::wstring& folder) {
    WIN32_FIND_DATAW entry;
    const HANDLE search = FindFirstFileW(Below(folder, L"*").c_str(), &entry);
    if (search == INVALID_HANDLE_VALUE) {
        const DWORD code = GetLastError();
        // An empty drive root has no entries at all.
        if (code == ERROR_FILE_NOT_FOUND && IsThere(folder, FILE_ATTRIBUTE_DIRECTORY))
            return {};
        // A drive that was pulled out has lost its path to the root as well.
        if (code == ERROR_NOT_READY || GetDriveTypeW(folder.substr(0, 3).c_str()) == DRIVE_NO_ROOT_DIR)
            throw RuntimeError(common::kDeviceUnavailable);
        common::RaiseFileError(code, common::ToNarrow(folder));
    }
    const common::Handle<HANDLE, FindClose> owner(search);
    std::vector<std::wstring> names;
    do {
        const std::wstring name = entry.cFileName;
        if ((entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) && name != L"." && name != L"..")
            names.push_back(name);
    } while (FindNextFileW(search, &entry));
    std::ranges::sort(names, [](const auto& x, const auto& y) { return Compare(x, y) < 0; });
    return names;
}

/// Takes the first name off a path.
std::wstring NextName(std::wstring& path) {
    const std::wstring name = path.substr(0, path.find(L'\\'));
    path.erase(0, name.size() + 1);
    return name;
}

} // namespace

std::string DirTree::Path() const {
    const auto selected = reinterpret_cast<HTREEITEM>(Send(TVM_GETNEXTITEM, TVGN_CARET));
    return selected ? common::NarrowFolder(PathOf(selected), common::kLongestChosenFolder) : std::string();
}

void DirTree::Path(const std::string& path) {
    // The tree knows folders by the names that their parents list.
    wchar_t longPath[32'768];
    const std::wstring wide = common::ToWide(path);
    const DWORD length = GetLongPathNameW(wide.c_str(), longPath, std::size(longPath));
    std::wstring folder = length > 0 && length < std::size(longPath) ? std::wstring(longPath, length) : wide;
    while (folder.size() > 3 && folder.ends_with(L'\\'))
        folder.pop_back();
    FoldersIn(folder);
    const std::wstring root = folder.substr(0, 2) + L"\\";
    FoldersIn(root);

    Send(TVM_DELETEITEM, 0, reinterpret_cast<LPARAM>(TVI_ROOT));
    HTREEITEM item = Add(TVI_ROOT, root);
    Fill(item);
    for (std::wstring rest = folder.substr(std::min<std::size_t>(3, folder.size())); !rest.empty();) {
        const std::wstring name = NextName(rest);
        if (name.empty())
            continue;
        const HTREEITEM child = Child(item, name);
        if (!child)
            break;
        Send(TVM_EXPAND, TVE_EXPAND, reinterpret_cast<LPARAM>(item));
        Fill(child);
        item = child;
    }
    Send(TVM_EXPAND, TVE_EXPAND, reinterpret_cast<LPARAM>(item));
    Send(TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(item));
    Send(TVM_ENSUREVISIBLE, 0, reinterpret_cast<LPARAM>(item));
}

bool DirTree::Notify(const NMHDR& header, LRESULT& /*result*/) {
    if (header.code == static_cast<UINT>(TVN_ITEMEXPANDINGA) ||
        header.code == static_cast<UINT>(TVN_ITEMEXPANDINGW)) {
        const auto& change = reinterpret_cast<const NMTREEVIEWA&>(header);
        if (change.action == TVE_EXPAND)
            Fill(change.itemNew.hItem);
    }
    if (header.code == static_cast<UINT>(TVN_SELCHANGEDA) ||
        header.code == static_cast<UINT>(TVN_SELCHANGEDW))
        Raise(change_);
    return false;
}

HTREEITEM DirTree::Add(HTREEITEM parent, const std::wstring& name) {
    std::wstring text = name;
    TVINSERTSTRUCTW insert{};
    insert.hParent = parent;
    insert.hInsertAfter = TVI_LAST;
    insert.item.mask = TVIF_TEXT | TVIF_CHILDREN | TVIF_PARAM;
    insert.item.pszText = text.data();
    // A plus sign until the folder has been looked into; lParam says whether it has.
    insert.item.cChildren = 1;
    insert.item.lParam = 0;
    return reinterpret_cast<HTREEITEM>(Send(TVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&insert)));
}

HTREEITEM DirTree::Child(HTREEITEM parent, const std::wstring& name) const {
    auto child =
        reinterpret_cast<HTREEITEM>(Send(TVM_GETNEXTITEM, TVGN_CHILD, reinterpret_cast<LPARAM>(parent)));
    while (child && Compare(TextOf(child), name) != 0)
        child =
            reinterpret_cast<HTREEITEM>(Send(TVM_GETNEXTITEM, TVGN_NEXT, reinterpret_cast<LPARAM>(child)));
    return child;
}

std::wstring DirTree::TextOf(HTREEITEM item) const {
    wchar_t text[MAX_PATH] = L"";
    TVITEMW query{};
    query.mask = TVIF_TEXT;
    query.hItem = item;
    query.pszText = text;
    query.cchTextMax = std::size(text);
    Send(TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&query));
    return text;
}

std::wstring DirTree::PathOf(HTREEITEM item) const {
    const auto parent =
        reinterpret_cast<HTREEITEM>(Send(TVM_GETNEXTITEM, TVGN_PARENT, reinterpret_cast<LPARAM>(item)));
    return parent ? Below(PathOf(parent), TextOf(item)) : TextOf(item);
}

void DirTree::Fill(HTREEITEM item) {
    TVITEMA query{};
    query.mask = TVIF_PARAM;
    query.hItem = item;
    Send(TVM_GETITEMA, 0, reinterpret_cast<LPARAM>(&query));
    if (query.lParam)
        return;
    std::vector<std::wstring> names;
    try {
        names = FoldersIn(PathOf(item));
    } catch (const RuntimeError&) {
        // A folder that may not be read opens as an empty one.
    }
    const std::wstring folder = PathOf(item);
    for (const std::wstring& name : names) {
        TVITEMA bold{};
        bold.mask = TVIF_STATE;
        bold.hItem = Add(item, name);
        bold.stateMask = bold.state = TVIS_BOLD;
        if (!wanted_.empty() && IsThere(Below(Below(folder, name), wanted_), 0))
            Send(TVM_SETITEMA, 0, reinterpret_cast<LPARAM>(&bold));
    }
    query.mask = TVIF_PARAM | TVIF_CHILDREN;
    query.lParam = 1;
    query.cChildren = names.empty() ? 0 : 1;
    Send(TVM_SETITEMA, 0, reinterpret_cast<LPARAM>(&query));
}
