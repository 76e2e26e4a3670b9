#include "gui/ListView.h"

#include <commctrl.h>

#include <algorithm>
#include <cstring>

namespace gui {

void ListView::Columns(const std::vector<Column>& columns) {
    Send(LVM_SETEXTENDEDLISTVIEWSTYLE, 0, LVS_EX_FULLROWSELECT | LVS_EX_LABELTIP);
    RECT client{};
    GetClientRect(Window(), &client);
    const int width = static_cast<int>(client.right) - GetSystemMetrics(SM_CXVSCROLL);
    for (std::size_t i = 0; i < columns.size(); ++i) {
        std::string heading = columns[i].heading;
        LVCOLUMNA column{};
        column.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_SUBITEM;
        column.pszText = heading.data();
        column.cx = width * columns[i].percent / 100;
        column.iSubItem = static_cast<int>(i);
        Send(LVM_INSERTCOLUMNA, i, reinterpret_cast<LPARAM>(&column));
    }
}

void ListView::Fill(std::size_t rows, TextAt text) {
    quiet_ = true;
    LVITEMA none{};
    none.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
    Send(LVM_SETITEMSTATE, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(&none));
    text_ = std::move(text);
    Send(LVM_SETITEMCOUNT, rows);
    quiet_ = false;
    InvalidateRect(Window(), nullptr, TRUE);
}

int ListView::ListCount() const {
    return static_cast<int>(Send(LVM_GETITEMCOUNT));
}

int ListView::ListIndex() const {
    return Window() ? static_cast<int>(Send(LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED)) : -1;
}

void ListView::ListIndex(int index) {
    quiet_ = true;
    LVITEMA state{};
    state.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
    Send(LVM_SETITEMSTATE, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(&state));
    if (index >= 0 && index < ListCount()) {
        state.state = state.stateMask;
        Send(LVM_SETITEMSTATE, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&state));
        Send(LVM_ENSUREVISIBLE, static_cast<WPARAM>(index), FALSE);
    }
    quiet_ = false;
    Raise(click_);
}

bool ListView::Notify(const NMHDR& header, LRESULT& /*result*/) {
    if (header.code == static_cast<UINT>(LVN_GETDISPINFOA)) {
        LVITEMA& item = const_cast<NMLVDISPINFOA&>(reinterpret_cast<const NMLVDISPINFOA&>(header)).item;
        if (!(item.mask & LVIF_TEXT) || item.cchTextMax <= 0 || !text_)
            return true;
        const std::string text =
            text_(static_cast<std::size_t>(item.iItem), static_cast<std::size_t>(item.iSubItem));
        const std::size_t length = std::min(text.size(), static_cast<std::size_t>(item.cchTextMax) - 1);
        std::memcpy(item.pszText, text.data(), length);
        item.pszText[length] = '\0';
        return true;
    }
    if (header.code == static_cast<UINT>(NM_DBLCLK)) {
        Raise(dblClick_);
        return true;
    }
    const bool selects = header.code == static_cast<UINT>(LVN_ITEMCHANGED) ||
                         header.code == static_cast<UINT>(LVN_ODSTATECHANGED);
    if (selects && !quiet_)
        Raise(click_);
    return selects;
}

} // namespace gui
