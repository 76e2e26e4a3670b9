#include "gui/TabPanel.h"

#include "gui/Focus.h"

#include <commctrl.h>
#include <uxtheme.h>

#include <algorithm>

namespace gui {

void TabPanel::Attached() {
    HWND behind = Window();
    for (std::size_t i = 0; i < pages_.size(); ++i) {
        TabPage& page = *pages_[i];
        page.Make();
        EnableThemeDialogTexture(page.Window(), ETDT_ENABLETAB);
        std::string caption = page.Caption();
        TCITEMA item{};
        item.mask = TCIF_TEXT;
        item.pszText = caption.data();
        Send(TCM_INSERTITEMA, i, reinterpret_cast<LPARAM>(&item));
        // Right behind the tabs in the tab order.
        SetWindowPos(page.Window(), behind, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
        behind = page.Window();
    }
    RECT area = Bounds();
    Send(TCM_ADJUSTRECT, FALSE, reinterpret_cast<LPARAM>(&area));
    for (TabPage* page : pages_)
        SetWindowPos(page->Window(), nullptr, area.left, area.top, area.right - area.left,
                     area.bottom - area.top, SWP_NOZORDER | SWP_NOACTIVATE);
    ShowPage();
}

int TabPanel::Tab() const {
    return static_cast<int>(Send(TCM_GETCURSEL));
}

void TabPanel::Tab(int index) {
    Send(TCM_SETCURSEL, static_cast<WPARAM>(index));
    ShowPage();
    Raise(click_);
}

void TabPanel::Mark(const Form& page, bool marked) {
    for (std::size_t i = 0; i < pages_.size(); ++i) {
        if (pages_[i] != &page)
            continue;
        std::string caption = page.Caption() + (marked ? " *" : "");
        char shown[128] = "";
        TCITEMA item{};
        item.mask = TCIF_TEXT;
        item.pszText = shown;
        item.cchTextMax = sizeof shown;
        Send(TCM_GETITEMA, i, reinterpret_cast<LPARAM>(&item));
        if (caption == shown)
            return;
        item.pszText = caption.data();
        Send(TCM_SETITEMA, i, reinterpret_cast<LPARAM>(&item));
    }
}

void TabPanel::LoadInside() {
    for (TabPage* page : pages_)
        page->LoadPage();
}

bool TabPanel::TurnPage(int by) {
    Tab((Tab() + by + Tabs()) % Tabs());
    return true;
}

bool TabPanel::PageKey(const MSG& message) {
    return std::ranges::any_of(pages_, [&](TabPage* page) {
        return IsChild(page->Window(), message.hwnd) && static_cast<Form*>(page)->Key(message);
    });
}

bool TabPanel::Notify(const NMHDR& header, LRESULT& /*result*/) {
    if (header.code != static_cast<UINT>(TCN_SELCHANGE))
        return false;
    ShowPage();
    Raise(click_);
    return true;
}

void TabPanel::ShowPage() {
    // The new page first, so that the keyboard focus of a hidden one has somewhere to go.
    const auto front = static_cast<std::size_t>(Tab());
    if (front < pages_.size())
        pages_[front]->Visible(true);
    for (std::size_t i = 0; i < pages_.size(); ++i) {
        if (i == front)
            continue;
        if (HasFocus(pages_[i]->Window()) && !(front < pages_.size() && EnterFocus(pages_[front]->Window())))
            LeaveFocus(pages_[i]->Window());
        pages_[i]->Visible(false);
    }
}

} // namespace gui
