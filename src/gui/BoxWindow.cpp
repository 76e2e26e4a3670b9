#include "gui/BoxWindow.h"

#include <algorithm>
#include <vector>

namespace gui {

namespace {

// The ids of the system's own box.
constexpr int kTextId = 0xFFFF;
constexpr int kIconId = 20;

struct BoxButton {
    int id;
    UINT systemText; ///< the system's own word, in the operator's language
    const char* caption;
};
constexpr BoxButton kOk{IDOK, 800, "OK"};
constexpr BoxButton kCancel{IDCANCEL, 801, "Cancel"};
constexpr BoxButton kRetry{IDRETRY, 803, "&Retry"};
constexpr BoxButton kYes{IDYES, 805, "&Yes"};
constexpr BoxButton kNo{IDNO, 806, "&No"};

std::vector<BoxButton> ButtonsOf(unsigned style) {
    switch (style & MB_TYPEMASK) {
    case MB_OKCANCEL:
        return {kOk, kCancel};
    case MB_YESNO:
        return {kYes, kNo};
    case MB_YESNOCANCEL:
        return {kYes, kNo, kCancel};
    case MB_RETRYCANCEL:
        return {kRetry, kCancel};
    default:
        return {kOk};
    }
}

LPCSTR IconOf(unsigned style) {
    switch (style & MB_ICONMASK) {
    case MB_ICONERROR:
        return IDI_ERROR;
    case MB_ICONQUESTION:
        return IDI_QUESTION;
    case MB_ICONEXCLAMATION:
        return IDI_EXCLAMATION;
    case MB_ICONINFORMATION:
        return IDI_INFORMATION;
    default:
        return nullptr;
    }
}

std::string CaptionOf(const BoxButton& button) {
    char text[64] = "";
    return LoadStringA(GetModuleHandleA("user32.dll"), button.systemText, text, sizeof text) ? text
                                                                                             : button.caption;
}

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

/// What a box is measured by: its font's average width and height, in which templates count as well.
class Measure {
public:
    Measure(HWND window, HFONT font) : window_(window), surface_(GetDC(window)) {
        old_ = SelectObject(surface_, font);
        constexpr char kLetters[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
        constexpr int kCount = 52;
        SIZE size{};
        GetTextExtentPoint32A(surface_, kLetters, kCount, &size);
        width_ = static_cast<int>(size.cx) / kCount;
        height_ = static_cast<int>(size.cy);
    }
    ~Measure() {
        SelectObject(surface_, old_);
        ReleaseDC(window_, surface_);
    }
    Measure(const Measure&) = delete;
    Measure& operator=(const Measure&) = delete;

    int X(int units) const { return units * width_ / 4; }
    int Y(int units) const { return units * height_ / 8; }
    SIZE Text(const std::string& text, int widest) const {
        RECT area{0, 0, widest, 1};
        DrawTextA(surface_, text.c_str(), -1, &area,
                  DT_CALCRECT | DT_NOPREFIX | DT_WORDBREAK | DT_EXPANDTABS | DT_EXTERNALLEADING);
        return {area.right, area.bottom};
    }
    int Line(const std::string& text) const {
        SIZE size{};
        GetTextExtentPoint32A(surface_, text.c_str(), static_cast<int>(text.size()), &size);
        return static_cast<int>(size.cx);
    }

private:
    HWND window_;
    HDC surface_;
    HGDIOBJ old_;
    int width_ = 0;
    int height_ = 0;
};

RECT WorkAreaOf(HWND window) {
    MONITORINFO monitor{};
    monitor.cbSize = sizeof monitor;
    GetMonitorInfoA(MonitorFromWindow(window, MONITOR_DEFAULTTOPRIMARY), &monitor);
    return monitor.rcWork;
}

} // namespace

BoxWindow::BoxWindow(const std::string& text, unsigned style, const std::string& title, HWND owner)
    : owner_(owner), font_(MakeMessageFont()) {
    window_ = MakeEmptyDialog(owner, title, Procedure, this);
    OpenBoxes().push_back(window_);
    Lay(text, style);
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

void BoxWindow::Lay(const std::string& text, unsigned style) {
    const HINSTANCE module = GetModuleHandleA(nullptr);
    const Measure measure(window_, font_);
    const RECT work = WorkAreaOf(owner_ ? owner_ : window_);
    const int margin = measure.X(7);
    const auto add = [&](const char* kind, const std::string& caption, DWORD childStyle, const RECT& at,
                         int id) {
        const HWND child = CreateWindowExA(
            0, kind, caption.c_str(), WS_CHILD | WS_VISIBLE | childStyle, at.left, at.top, at.right - at.left,
            at.bottom - at.top, window_, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), module, nullptr);
        SendMessageA(child, WM_SETFONT, reinterpret_cast<WPARAM>(font_), FALSE);
        return child;
    };

    const LPCSTR icon = IconOf(style);
    const int iconWidth = icon ? GetSystemMetrics(SM_CXICON) : 0;
    const int iconHeight = icon ? GetSystemMetrics(SM_CYICON) : 0;
    const int textLeft = icon ? margin * 2 + iconWidth : margin;
    const SIZE textSize = measure.Text(text, static_cast<int>(work.right - work.left) * 5 / 8 - textLeft);

    const std::vector<BoxButton> buttons = ButtonsOf(style);
    std::vector<std::string> captions;
    int buttonWidth = measure.X(50);
    for (const BoxButton& button : buttons) {
        captions.push_back(CaptionOf(button));
        buttonWidth = std::max(buttonWidth, measure.Line(captions.back()) + measure.X(10));
    }
    const int buttonHeight = measure.Y(14);
    const int gap = measure.X(4);
    const int count = static_cast<int>(buttons.size());
    const int buttonsWidth = count * buttonWidth + (count - 1) * gap;

    const int contentHeight = std::max(static_cast<int>(textSize.cy), iconHeight);
    const int top = measure.Y(10);
    const int width = std::max(textLeft + static_cast<int>(textSize.cx) + margin, buttonsWidth + 2 * margin);
    footer_ = top + contentHeight + top;
    const int height = footer_ + measure.Y(7) + buttonHeight + measure.Y(7);

    if (icon) {
        const HWND picture =
            add("STATIC", "", SS_ICON, {margin, top, margin + iconWidth, top + iconHeight}, kIconId);
        SendMessageA(picture, STM_SETICON, reinterpret_cast<WPARAM>(LoadIconA(nullptr, icon)), 0);
    }
    const int textTop = top + (contentHeight - static_cast<int>(textSize.cy)) / 2;
    add("STATIC", text, SS_NOPREFIX | SS_LEFT,
        {textLeft, textTop, textLeft + textSize.cx, textTop + textSize.cy}, kTextId);

    const std::size_t byDefault = (style & MB_DEFMASK) == MB_DEFBUTTON2 ? 1u : 0u;
    int left = width - margin - buttonsWidth;
    if (count == 1)
        left = (width - buttonsWidth) / 2;
    for (std::size_t i = 0; i < buttons.size(); ++i, left += buttonWidth + gap) {
        const bool isDefault = i == byDefault;
        const int buttonTop = footer_ + measure.Y(7);
        const HWND child =
            add("BUTTON", captions[i],
                WS_TABSTOP | static_cast<DWORD>(isDefault ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON),
                {left, buttonTop, left + buttonWidth, buttonTop + buttonHeight}, buttons[i].id);
        if (isDefault) {
            SendMessageA(window_, DM_SETDEFID, static_cast<WPARAM>(buttons[i].id), 0);
            SetFocus(child);
        }
    }
    // A question cannot be put away without an answer.
    if (!GetDlgItem(window_, IDCANCEL) && !GetDlgItem(window_, IDOK))
        EnableMenuItem(GetSystemMenu(window_, FALSE), SC_CLOSE, MF_BYCOMMAND | MF_GRAYED);

    RECT whole{0, 0, width, height};
    AdjustWindowRectEx(&whole, static_cast<DWORD>(GetWindowLongPtrA(window_, GWL_STYLE)), FALSE,
                       static_cast<DWORD>(GetWindowLongPtrA(window_, GWL_EXSTYLE)));
    const LONG fullWidth = whole.right - whole.left;
    const LONG fullHeight = whole.bottom - whole.top;
    SetWindowPos(window_, nullptr, std::max(work.left, (work.left + work.right - fullWidth) / 2),
                 std::max(work.top, (work.top + work.bottom - fullHeight) / 2), fullWidth, fullHeight,
                 SWP_NOZORDER | SWP_NOACTIVATE);
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
    const auto textOf = [](HWND window) {
        std::string text(static_cast<std::size_t>(GetWindowTextLengthA(window)) + 1, '\0');
        text.resize(
            static_cast<std::size_t>(GetWindowTextA(window, text.data(), static_cast<int>(text.size()))));
        return text;
    };
    const std::string text = textOf(window_) + "\r\n\r\n" + textOf(GetDlgItem(window_, kTextId)) + "\r\n";
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
