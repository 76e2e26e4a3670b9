#include "gui/BoxLayout.h"

#include "gui/Placement.h"

#include <algorithm>
#include <vector>

namespace gui {

namespace {

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

} // namespace

int LayBox(HWND window, HFONT font, const std::string& text, unsigned style, HWND owner) {
    const HINSTANCE module = GetModuleHandleA(nullptr);
    const Measure measure(window, font);
    const RECT work = WorkAreaAround(owner ? owner : window);
    const int margin = measure.X(7);
    const auto add = [&](const char* kind, const std::string& caption, DWORD childStyle, const RECT& at,
                         int id) {
        const HWND child = CreateWindowExA(
            0, kind, caption.c_str(), WS_CHILD | WS_VISIBLE | childStyle, at.left, at.top, at.right - at.left,
            at.bottom - at.top, window, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), module, nullptr);
        SendMessageA(child, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
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
    const int footer = top + contentHeight + top;
    const int height = footer + measure.Y(7) + buttonHeight + measure.Y(7);

    if (icon) {
        const HWND picture =
            add("STATIC", "", SS_ICON, {margin, top, margin + iconWidth, top + iconHeight}, kIconId);
        SendMessageA(picture, STM_SETICON, reinterpret_cast<WPARAM>(LoadIconA(nullptr, icon)), 0);
    }
    const int textTop = top + (contentHeight - static_cast<int>(textSize.cy)) / 2;
    add("STATIC", text, SS_NOPREFIX | SS_LEFT,
        {textLeft, textTop, textLeft + textSize.cx, textTop + textSize.cy}, kBoxTextId);

    const std::size_t byDefault = (style & MB_DEFMASK) == MB_DEFBUTTON2 ? 1u : 0u;
    int left = width - margin - buttonsWidth;
    if (count == 1)
        left = (width - buttonsWidth) / 2;
    for (std::size_t i = 0; i < buttons.size(); ++i, left += buttonWidth + gap) {
        const bool isDefault = i == byDefault;
        const int buttonTop = footer + measure.Y(7);
        const HWND child =
            add("BUTTON", captions[i],
                WS_TABSTOP | static_cast<DWORD>(isDefault ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON),
                {left, buttonTop, left + buttonWidth, buttonTop + buttonHeight}, buttons[i].id);
        if (isDefault) {
            SendMessageA(window, DM_SETDEFID, static_cast<WPARAM>(buttons[i].id), 0);
            SetFocus(child);
        }
    }
    // A question cannot be put away without an answer.
    if (!GetDlgItem(window, IDCANCEL) && !GetDlgItem(window, IDOK))
        EnableMenuItem(GetSystemMenu(window, FALSE), SC_CLOSE, MF_BYCOMMAND | MF_GRAYED);

    RECT whole{0, 0, width, height};
    AdjustWindowRectEx(&whole, static_cast<DWORD>(GetWindowLongPtrA(window, GWL_STYLE)), FALSE,
                       static_cast<DWORD>(GetWindowLongPtrA(window, GWL_EXSTYLE)));
    const LONG fullWidth = whole.right - whole.left;
    const LONG fullHeight = whole.bottom - whole.top;
    SetWindowPos(window, nullptr, std::max(work.left, (work.left + work.right - fullWidth) / 2),
                 std::max(work.top, (work.top + work.bottom - fullHeight) / 2), fullWidth, fullHeight,
                 SWP_NOZORDER | SWP_NOACTIVATE);
    return footer;
}

} // namespace gui
