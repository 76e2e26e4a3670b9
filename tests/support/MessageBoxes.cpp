#include "support/MessageBoxes.h"

#include <gtest/gtest.h>

#include <ostream>

namespace support {

namespace {

// The box has no identifier that tells it from other dialogs; its children's ids do.
constexpr int kTextId = 0xFFFF;
constexpr int kLastButton = IDCONTINUE;
constexpr const char* kSeen = "kToolsSeenBox";

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
    const auto has = [box](int id) { return IsShown(GetDlgItem(box, id)); };
    if (has(IDYES))
        return has(IDCANCEL) ? MB_YESNOCANCEL : MB_YESNO;
    if (has(IDRETRY))
        return has(IDABORT) ? MB_ABORTRETRYIGNORE : MB_RETRYCANCEL;
    // The only button of a plain box has the id of Cancel on some systems, so that Esc presses it.
    return has(IDOK) && has(IDCANCEL) ? MB_OKCANCEL : MB_OK;
}

unsigned IconOf(HWND box) {
    for (HWND child = GetWindow(box, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
        const LRESULT icon = IsShown(child) ? SendMessageA(child, STM_GETICON, 0, 0) : 0;
        for (const auto& [style, name] : {std::pair<unsigned, LPCSTR>{MB_ICONERROR, IDI_ERROR},
                                          {MB_ICONQUESTION, IDI_QUESTION},
                                          {MB_ICONEXCLAMATION, IDI_EXCLAMATION},
                                          {MB_ICONINFORMATION, IDI_INFORMATION}})
            if (icon && LoadIconA(nullptr, name) == reinterpret_cast<HICON>(icon))
                return style;
    }
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
    if (GetPropA(window, kSeen) || !IsMessageBox(window))
        return;
    SetPropA(window, kSeen, window);
    seen_.push_back(
        {WindowText(window), WindowText(GetDlgItem(window, kTextId)), ButtonsOf(window) | IconOf(window)});
    // Answered from the box's own message loop: here it is still coming up.
    SetTimer(window, 0x6B54, USER_TIMER_MINIMUM, Shown);
}

void CALLBACK MessageBoxes::Shown(HWND box, UINT /*message*/, UINT_PTR timer, DWORD /*time*/) {
    KillTimer(box, timer);
    if (innermost)
        innermost->Press(box);
}

void MessageBoxes::Press(HWND box) {
    const bool question = ButtonsOf(box) != MB_OK;
    Reply reply{question ? 0 : IDOK, {}};
    if (!replies_.empty() && (question || replies_.front().button == IDOK)) {
        reply = std::move(replies_.front());
        replies_.pop_front();
    }
    if (reply.meanwhile)
        reply.meanwhile();
    if (!IsWindow(box))
        return;
    if (question && !IsShown(GetDlgItem(box, reply.button))) {
        ADD_FAILURE() << "no answer was prepared for: " << WindowText(GetDlgItem(box, kTextId));
        reply.button = IsShown(GetDlgItem(box, IDCANCEL)) ? IDCANCEL : IDNO;
    }
    PostMessageA(box, WM_COMMAND, MAKEWPARAM(reply.button, BN_CLICKED), 0);
}

} // namespace support
