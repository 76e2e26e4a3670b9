#include "Hands.h"

#include "Report.h"

#include <commctrl.h>

namespace {

DWORD toolProcess = 0;

struct ControlSearch {
    int id;
    HWND found;
};

BOOL CALLBACK LookForControl(HWND child, LPARAM parameter) {
    auto& wanted = *reinterpret_cast<ControlSearch*>(parameter);
    if (GetDlgCtrlID(child) == wanted.id)
        wanted.found = child;
    return !wanted.found;
}

BOOL CALLBACK AddToolWindow(HWND window, LPARAM parameter) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    RECT bounds;
    GetWindowRect(window, &bounds);
    if (process == toolProcess && IsWindowVisible(window) && !IsRectEmpty(&bounds) &&
        !IsOfClass(window, TOOLTIPS_CLASSA))
        reinterpret_cast<std::set<HWND>*>(parameter)->insert(window);
    return TRUE;
}

} // namespace

std::string TextOf(HWND window) {
    char text[256] = "";
    GetWindowTextA(window, text, sizeof text);
    return text;
}

bool IsOfClass(HWND window, const std::string& wanted) {
    char name[32] = "";
    GetClassNameA(window, name, sizeof name);
    return name == wanted;
}

HWND ControlOf(HWND window, int id) {
    ControlSearch search{id, nullptr};
    EnumChildWindows(window, LookForControl, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

bool HasText(HWND window, int id) {
    return SendMessageA(ControlOf(window, id), WM_GETTEXTLENGTH, 0, 0) > 0;
}

void Type(HWND window, int id, const char* text) {
    SendMessageA(ControlOf(window, id), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text));
}

Act Press(int id) {
    return [id](HWND window) {
        if (HWND button = ControlOf(window, id))
            PostMessageA(button, BM_CLICK, 0, 0);
        else
            PostMessageA(window, WM_COMMAND, static_cast<WPARAM>(id), 0);
    };
}

Act ClickOn(int id) {
    return [id](HWND window) {
        HWND control = ControlOf(window, id);
        RECT bounds{};
        GetWindowRect(control, &bounds);
        SetCursorPos(bounds.left + 60, bounds.top + 30);
        // A message carries the place of the pointer, which the screen moves in its own time.
        Sleep(500);
        PostMessageA(control, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(60, 30));
        PostMessageA(control, WM_LBUTTONUP, 0, MAKELPARAM(60, 30));
    };
}

void PostKeys(HWND window, int key, int times) {
    for (int i = 0; i < times; ++i)
        PostMessageA(window, WM_KEYDOWN, static_cast<WPARAM>(key), 0);
}

Act MenuBar(int index) {
    return [index](HWND window) {
        PostMessageA(window, WM_SYSCOMMAND, SC_KEYMENU, 0);
        PostKeys(window, VK_RIGHT, index);
        PostKeys(window, VK_DOWN, 1);
    };
}

Act TrayMenu(int downs) {
    return [downs](HWND window) {
        RECT bounds{};
        GetWindowRect(window, &bounds);
        SetCursorPos(bounds.left - 30, bounds.top - 70);
        PostMessageA(window, WM_LBUTTONDOWN, 0, WM_RBUTTONDOWN);
        PostKeys(window, VK_DOWN, downs);
        PostKeys(window, VK_RIGHT, downs ? 1 : 0);
    };
}

void ToolProcess(DWORD process) {
    toolProcess = process;
}

std::set<HWND> ToolWindows() {
    std::set<HWND> windows;
    EnumWindows(AddToolWindow, reinterpret_cast<LPARAM>(&windows));
    return windows;
}

void Expect(HWND window, const std::string& what, const std::function<bool()>& condition) {
    if (!WaitUntil(condition))
        Failed(TextOf(window) + ": " + what);
}

void AnswerBox(const std::string& start, int button) {
    HWND box = nullptr;
    Expect(box, "no box came: " + start, [&] {
        for (HWND each : ToolWindows())
            if (TextOf(GetDlgItem(each, 0xFFFF)).starts_with(start))
                box = each;
        return box != nullptr;
    });
    PostMessageA(GetDlgItem(box, button), BM_CLICK, 0, 0);
    Expect(box, "the box did not close", [&] { return !IsWindow(box); });
}
