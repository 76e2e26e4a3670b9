#include "support/MessageBoxes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>

namespace support {

namespace {

// The box has no identifier that tells it from other dialogs; its children's ids do.
constexpr int kTextId = 0xFFFF;
constexpr int kLastButton = IDCONTINUE;

MessageBoxes* innermost = nullptr;

std::string WindowText(HWND window) {
    char text[2048] = "";
    GetWindowTextA(window, text, sizeof text);
    return text;
}

bool IsShown(HWND window) {
    return window && (GetWindowLongPtrA(window, GWL_STYLE) & WS_VISIBLE);
}

bool IsMessageBox(HWND window) {
    char name[16] = "";
    GetClassNameA(window, name, sizeof name);
    if (std::string(name) != "#32770" || !GetDlgItem(window, kTextId))
        return false;
    for (HWND child = GetWindow(window, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
        GetClassNameA(child, name, sizeof name);
        const bool isText = std::string(name) == "Static";
        const int id = GetDlgCtrlID(child);
        if (!isText && !(id >= IDOK && id <= kLastButton))
            return false;
    }
    return true;
}

unsigned ButtonsOf(HWND box) {
    unsigned shown = 0;
    for (int id = IDOK; id <= kLastButton; ++id)
        if (IsShown(GetDlgItem(box, id)))
            shown |= 1u << id;
    const struct {
        unsigned style;
        unsigned buttons;
    } kinds[] = {{MB_OK, 1u << IDOK},
                 {MB_OKCANCEL, 1u << IDOK | 1u << IDCANCEL},
                 {MB_YESNO, 1u << IDYES | 1u << IDNO},
                 {MB_YESNOCANCEL, 1u << IDYES | 1u << IDNO | 1u << IDCANCEL},
                 {MB_RETRYCANCEL, 1u << IDRETRY | 1u << IDCANCEL},
                 {MB_ABORTRETRYIGNORE, 1u << IDABORT | 1u << IDRETRY | 1u << IDIGNORE}};
    for (const auto& kind : kinds)
        // The only button of a plain box has the id of Cancel on some systems, so that Esc presses it.
        if (kind.buttons == shown || (kind.style == MB_OK && shown == 1u << IDCANCEL))
            return kind.style;
    ADD_FAILURE() << "a message box with unknown buttons";
    return MB_OK;
}

unsigned IconOf(HWND box) {
    HICON shown = nullptr;
    for (HWND child = GetWindow(box, GW_CHILD); child && !shown; child = GetWindow(child, GW_HWNDNEXT))
        if (IsShown(child))
            shown = reinterpret_cast<HICON>(SendMessageA(child, STM_GETICON, 0, 0));
    const struct {
        unsigned style;
        LPCSTR icon;
    } kinds[] = {{MB_ICONERROR, IDI_ERROR},
                 {MB_ICONQUESTION, IDI_QUESTION},
                 {MB_ICONEXCLAMATION, IDI_EXCLAMATION},
                 {MB_ICONINFORMATION, IDI_INFORMATION}};
    for (const auto& kind : kinds)
        if (shown && LoadIconA(nullptr, kind.icon) == shown)
            return kind.style;
    return 0;
}

} // namespace

std::ostream& operator<<(std::ostream& out, const SeenBox& box) {
    return out << '[' << box.title << "] \"" << box.text << "\" style " << box.style;
}

MessageBoxes::MessageBoxes() : outer_(innermost) {
    innermost = this;
    hook_ = SetWindowsHookExA(WH_CBT, Hook, nullptr, GetCurrentThreadId());
}

MessageBoxes::~MessageBoxes() {
    UnhookWindowsHookEx(hook_);
    for (const OpenBox& box : open_)
        KillTimer(nullptr, box.timer);
    innermost = outer_;
    EXPECT_TRUE(replies_.empty()) << replies_.size() << " prepared answers were not asked for";
}

MessageBoxes& MessageBoxes::Answer(int button, std::function<void()> meanwhile) {
    replies_.push_back({button, std::move(meanwhile)});
    return *this;
}

std::vector<std::string> MessageBoxes::Texts() const {
    std::vector<std::string> texts;
    for (const SeenBox& box : seen_)
        texts.push_back(box.text);
    return texts;
}

LRESULT CALLBACK MessageBoxes::Hook(int code, WPARAM wParam, LPARAM lParam) {
    if (innermost && code == HCBT_ACTIVATE)
        innermost->Activated(reinterpret_cast<HWND>(wParam));
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

void MessageBoxes::Activated(HWND window) {
    std::erase_if(open_, [](const OpenBox& box) { return !IsWindow(box.window); });
    if (std::ranges::count(open_, window, &OpenBox::window) || !IsMessageBox(window))
        return;
    const unsigned buttons = ButtonsOf(window);
    seen_.push_back({WindowText(window), WindowText(GetDlgItem(window, kTextId)), buttons | IconOf(window)});
    // Answered from the box's own message loop: here it is still coming up.
    open_.push_back({window, SetTimer(nullptr, 0, USER_TIMER_MINIMUM, OnTimer), buttons != MB_OK});
}

void CALLBACK MessageBoxes::OnTimer(HWND /*window*/, UINT /*message*/, UINT_PTR timer, DWORD /*time*/) {
    KillTimer(nullptr, timer);
    if (!innermost)
        return;
    const auto found = std::ranges::find(innermost->open_, timer, &OpenBox::timer);
    if (found != innermost->open_.end())
        innermost->Press(OpenBox(*found));
}

void MessageBoxes::Press(const OpenBox& box) {
    Reply reply{box.question ? 0 : IDOK, {}};
    if (!replies_.empty() && (box.question || replies_.front().button == IDOK)) {
        reply = std::move(replies_.front());
        replies_.pop_front();
    } else if (box.question) {
        ADD_FAILURE() << "no answer was prepared for: " << seen_.back();
    }
    if (reply.meanwhile)
        reply.meanwhile();
    if (!IsWindow(box.window))
        return;
    int button = reply.button;
    if (box.question && !IsShown(GetDlgItem(box.window, button))) {
        EXPECT_EQ(button, 0) << "the box has no such button";
        button =
            GetDlgItem(box.window, IDCANCEL) && IsShown(GetDlgItem(box.window, IDCANCEL)) ? IDCANCEL : IDNO;
    }
    PostMessageA(box.window, WM_COMMAND, MAKEWPARAM(button, BN_CLICKED), 0);
}

} // namespace support
