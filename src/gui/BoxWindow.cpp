#include "gui/BoxWindow.h"

#include "gui/BoxLayout.h"
#include "gui/WindowText.h"

#include <algorithm>
#include <vector>

namespace gui {

namespace {

std::vector<HWND>& OpenBoxes() {
    static std::vector<HWND> boxes;
    return boxes;
}

HWND MakeEmptyDialog(HWND owner, const std::string& title, DLGPROC procedure, void* box) {
    struct {
        DLGTEMPLATE dialog;
        WORD menu, windowClass, title;
    } layout{};
    layout.dialog.style = WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME;
    const HWND window = CreateDialogIndirectParamA(GetModuleHandleA(nullptr), &layout.dialog, owner,
                                                   procedure, reinterpret_cast<LPARAM>(box));
    SetWindowTextA(window, title.c_str());
    return window;
}

HFONT MakeMessageFont() {
    NONCLIENTMETRICSA metrics{};
    metrics.cbSize = sizeof metrics;
    SystemParametersInfoA(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
    return CreateFontIndirectA(&metrics.lfMessageFont);
}

} // namespace

BoxWindow::BoxWindow(const std::string& text, unsigned style, const std::string& title, HWND owner)
    : owner_(owner), font_(MakeMessageFont()) {
    window_ = MakeEmptyDialog(owner, title, Procedure, this);
    OpenBoxes().push_back(window_);
    footer_ = LayBox(window_, font_, text, style, owner);
    disabled_.emplace(owner);
    MessageBeep(style & MB_ICONMASK);
    ShowWindow(window_, SW_SHOW);
    SetForegroundWindow(window_);
}

BoxWindow::~BoxWindow() {
    Close();
    DeleteObject(font_);
}

void BoxWindow::Close() {
    if (!window_)
        return;
    // Before the window goes, or the system would activate some other program's window.
    disabled_.reset();
    DestroyWindow(window_);
    // Another box of the owner may still be open; it comes to the front, not the owner behind it.
    if (owner_ && !IsWindowEnabled(owner_) && GetActiveWindow() == owner_)
        SetActiveWindow(GetLastActivePopup(owner_));
}

void BoxWindow::Answer(int id) {
    if (id == IDCANCEL && !GetDlgItem(window_, IDCANCEL))
        id = IDOK;
    if (button_ || !GetDlgItem(window_, id))
        return;
    button_ = id;
    Close();
}

void BoxWindow::PaintBackground(HDC surface) const {
    RECT area;
    GetClientRect(window_, &area);
    RECT footer = area;
    area.bottom = footer.top = footer_;
    FillRect(surface, &area, GetSysColorBrush(COLOR_WINDOW));
    FillRect(surface, &footer, GetSysColorBrush(COLOR_BTNFACE));
}

void BoxWindow::CopyText() const {
    const std::string text = TextOf(window_) + "\r\n\r\n" + TextOf(GetDlgItem(window_, kBoxTextId)) + "\r\n";
    if (!OpenClipboard(window_))
        return;
    EmptyClipboard();
    if (const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, text.size() + 1)) {
        std::copy_n(text.c_str(), text.size() + 1, static_cast<char*>(GlobalLock(memory)));
        GlobalUnlock(memory);
        if (!SetClipboardData(CF_TEXT, memory))
            GlobalFree(memory);
    }
    CloseClipboard();
}

INT_PTR CALLBACK BoxWindow::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrA(window, DWLP_USER, lParam);
        return FALSE;
    }
    auto* box = reinterpret_cast<BoxWindow*>(GetWindowLongPtrA(window, DWLP_USER));
    if (!box || !box->window_)
        return FALSE;
    switch (message) {
    case WM_COMMAND:
        box->Answer(LOWORD(wParam));
        return TRUE;
    case WM_CLOSE:
        box->Answer(IDCANCEL);
        return TRUE;
    case WM_ERASEBKGND:
        box->PaintBackground(reinterpret_cast<HDC>(wParam));
        SetWindowLongPtrA(window, DWLP_MSGRESULT, TRUE);
        return TRUE;
    case WM_CTLCOLORSTATIC:
        SetTextColor(reinterpret_cast<HDC>(wParam), GetSysColor(COLOR_WINDOWTEXT));
        SetBkColor(reinterpret_cast<HDC>(wParam), GetSysColor(COLOR_WINDOW));
        return reinterpret_cast<INT_PTR>(GetSysColorBrush(COLOR_WINDOW));
    case WM_COPY:
        box->CopyText();
        return TRUE;
    case WM_NCDESTROY:
        std::erase(OpenBoxes(), window);
        box->window_ = nullptr;
        box->disabled_.reset();
        box->Answered.Set();
        return FALSE;
    default:
        return FALSE;
    }
}

HWND BoxWindow::OwnerOf(HWND window) {
    while (std::ranges::find(OpenBoxes(), window) != OpenBoxes().end())
        window = GetWindow(window, GW_OWNER);
    return window;
}

bool BoxWindow::TranslateKey(MSG& message) {
    const HWND root = message.hwnd ? GetAncestor(message.hwnd, GA_ROOT) : nullptr;
    if (!root || std::ranges::find(OpenBoxes(), root) == OpenBoxes().end())
        return false;
    if (message.message == WM_KEYDOWN && message.wParam == 'C' && GetKeyState(VK_CONTROL) < 0) {
        SendMessageA(root, WM_COPY, 0, 0);
        return true;
    }
    return IsDialogMessageA(root, &message) != FALSE;
}

} // namespace gui
