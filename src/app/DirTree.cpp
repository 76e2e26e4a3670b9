#include "app/DirTree.h"

#include "common/Files.h"
#include "common/Text.h"

#include <algorithm>
#include <vector>

namespace {

std::string Below(const std::string& folder, const std::string& name) {
    return folder + (folder.ends_with('\\') ? "" : "\\") + name;
}

/// Names of the folders in a folder, sorted. Raises as DirTree::Path does.
std::vector<std::string> FoldersIn(const std::string& folder) {
    const auto entries = common::EntriesOf(folder);
    if (!entries) {
        const DWORD code = GetLastError();
        // An empty drive root has no entries at all.
        if (code == ERROR_FILE_NOT_FOUND && common::FolderExists(folder))
            return {};
        // A drive that was pulled out has lost its path to the root as well.
        if (code == ERROR_NOT_READY || GetDriveTypeA(folder.substr(0, 3).c_str()) == DRIVE_NO_ROOT_DIR)
            throw RuntimeError(common::kDeviceUnavailable);
        common::RaiseFileError(code, folder);
    }
    std::vector<std::string> names;
    for (const common::FolderEntry& entry : *entries)
        if (entry.IsFolder())
            names.push_back(entry.name);
    std::ranges::sort(names, {}, [](const std::string& name) { return common::UpperCase(name); });
    return names;
}

} // namespace

std::string DirTree::Path() const {
    const auto selected = reinterpret_cast<HTREEITEM>(Send(TVM_GETNEXTITEM, TVGN_CARET));
    return selected ? PathOf(selected) : std::string();
}

void DirTree::Path(const std::string& path) {
    // The tree knows folders by the names that their parents list.
    char longPath[MAX_PATH];
    const DWORD length = GetLongPathNameA(path.c_str(), longPath, sizeof longPath);
    std::string folder = length > 0 && length < sizeof longPath ? std::string(longPath, length) : path;
    while (folder.size() > 3 && folder.ends_with('\\'))
        folder.pop_back();
    FoldersIn(folder);
    const std::string root = folder.substr(0, 2) + "\\";
    FoldersIn(root);

    Send(TVM_DELETEITEM, 0, reinterpret_cast<LPARAM>(TVI_ROOT));
    HTREEITEM item = Add(TVI_ROOT, root);
    Fill(item);
    for (const std::string& name :
         common::Split(std::string_view(folder).substr(std::min<std::size_t>(3, folder.size())), '\\')) {
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
    return false;
}

HTREEITEM DirTree::Add(HTREEITEM parent, const std::string& name) {
    std::string text = name;
    TVINSERTSTRUCTA insert{};
    insert.hParent = parent;
    insert.hInsertAfter = TVI_LAST;
    insert.item.mask = TVIF_TEXT | TVIF_CHILDREN | TVIF_PARAM;
    insert.item.pszText = text.data();
    // A plus sign until the folder has been looked into; lParam says whether it has.
    insert.item.cChildren = 1;
    insert.item.lParam = 0;
    return reinterpret_cast<HTREEITEM>(Send(TVM_INSERTITEMA, 0, reinterpret_cast<LPARAM>(&insert)));
}

HTREEITEM DirTree::Child(HTREEITEM parent, const std::string& name) const {
    auto child =
        reinterpret_cast<HTREEITEM>(Send(TVM_GETNEXTITEM, TVGN_CHILD, reinterpret_cast<LPARAM>(parent)));
    while (child && !common::EqualsIgnoreCase(TextOf(child), name))
        child =
            reinterpret_cast<HTREEITEM>(Send(TVM_GETNEXTITEM, TVGN_NEXT, reinterpret_cast<LPARAM>(child)));
    return child;
}

std::string DirTree::TextOf(HTREEITEM item) const {
    char text[MAX_PATH] = "";
    TVITEMA query{};
    query.mask = TVIF_TEXT;
    query.hItem = item;
    query.pszText = text;
    query.cchTextMax = sizeof text;
    Send(TVM_GETITEMA, 0, reinterpret_cast<LPARAM>(&query));
    return text;
}

std::string DirTree::PathOf(HTREEITEM item) const {
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
    std::vector<std::string> names;
    try {
        names = FoldersIn(PathOf(item));
    } catch (const RuntimeError&) {
        // A folder that may not be read opens as an empty one.
    }
    for (const std::string& name : names)
        Add(item, name);
    query.mask = TVIF_PARAM | TVIF_CHILDREN;
    query.lParam = 1;
    query.cChildren = names.empty() ? 0 : 1;
    Send(TVM_SETITEMA, 0, reinterpret_cast<LPARAM>(&query));
}
