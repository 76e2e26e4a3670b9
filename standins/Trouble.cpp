#include "Trouble.h"

#include "Profile.h"

#include <algorithm>
#include <atomic>
#include <string>
#include <thread>

namespace standin {

namespace {

constexpr int kDialogsAtATime = 8;

std::atomic<int> openDialogs;
std::atomic<int> raisedDialogs;

LRESULT CALLBACK SwallowClose(int code, WPARAM wParam, LPARAM lParam) {
    auto* message = reinterpret_cast<MSG*>(lParam);
    if (code == HC_ACTION && message->message == WM_CLOSE)
        message->message = WM_NULL;
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

void ShowDialog(HWND owner, Command kind) {
    const std::string text = "Error " + std::to_string(++raisedDialogs) + ": " + kErrorText;
    const char* title = kind == Command::RaiseTitledDialog ? kProfile.executable : kErrorTitle;
    HHOOK hook = nullptr;
    if (kind == Command::RaiseStubbornDialog)
        hook = SetWindowsHookExA(WH_GETMESSAGE, SwallowClose, nullptr, GetCurrentThreadId());
    ++openDialogs;
    MessageBoxA(owner, text.c_str(), title, MB_OK | MB_ICONERROR);
    --openDialogs;
    if (hook)
        UnhookWindowsHookEx(hook);
}

} // namespace

void RaiseDialogs(HWND owner, Command kind, int count) {
    // A message box needs a thread of its own to stand beside others; a storm of them keeps a few threads
    // busy.
    const int threads = std::clamp(count, 0, kDialogsAtATime);
    for (int first = 0; first < threads; ++first) {
        std::thread([=] {
            for (int i = first; i < count; i += threads)
                ShowDialog(owner, kind);
        }).detach();
    }
}

bool DialogIsOpen() {
    return openDialogs > 0;
}

void Crash() {
    // Gone at once with a fault's exit code, as seen from outside; a real fault would bring up the system's
    // own crash dialog or debugger.
    TerminateProcess(GetCurrentProcess(), static_cast<UINT>(EXCEPTION_ACCESS_VIOLATION));
}

} // namespace standin
