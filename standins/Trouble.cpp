#include "Trouble.h"

#include "Profile.h"

#include <algorithm>
#include <string>
#include <vector>

namespace standin {

namespace {

constexpr std::size_t kDialogsAtATime = 8;
// In ErrorDialog.rc.
constexpr int kTextId = 100;
constexpr int kIconId = 101;

// The dialogs belong to the program's only thread: the system that the tests run on comes to a standstill now
// and then when several threads of a program bring up windows together.
std::vector<HWND> openDialogs;
int raisedDialogs = 0;
int dialogsToCome = 0;

void RaiseNext(HWND owner, Command kind);

void End(HWND dialog) {
    const HWND owner = GetWindow(dialog, GW_OWNER);
    std::erase(openDialogs, dialog);
    // Before the dialog goes, so that the owner can be activated in its place.
    EnableWindow(owner, openDialogs.empty());
    DestroyWindow(dialog);
    if (dialogsToCome > 0) {
        --dialogsToCome;
        RaiseNext(owner, Command::RaiseDialogs);
    }
}

INT_PTR CALLBACK DialogProc(HWND dialog, UINT message, WPARAM, LPARAM lParam) {
    const auto kind = static_cast<Command>(GetWindowLongPtrA(dialog, GWLP_USERDATA));
    switch (message) {
    case WM_INITDIALOG: {
        SetWindowLongPtrA(dialog, GWLP_USERDATA, lParam);
        SendDlgItemMessageA(dialog, kIconId, STM_SETICON,
                            reinterpret_cast<WPARAM>(LoadIconA(nullptr, IDI_ERROR)), 0);
        const bool titled = static_cast<Command>(lParam) == Command::RaiseTitledDialog;
        SetWindowTextA(dialog, titled ? kProfile.executable : kErrorTitle);
        const std::string text = "Error " + std::to_string(++raisedDialogs) + ": " + kErrorText;
        SetDlgItemTextA(dialog, kTextId, text.c_str());
        return TRUE;
    }
    case WM_CLOSE:
        if (kind != Command::RaiseStubbornDialog)
            End(dialog);
        return TRUE;
    case WM_COMMAND:
        End(dialog);
        return TRUE;
    }
    return FALSE;
}

void RaiseNext(HWND owner, Command kind) {
    EnableWindow(owner, FALSE);
    const HWND dialog = CreateDialogParamA(GetModuleHandleA(nullptr), "ErrorDialog", owner, DialogProc,
                                           static_cast<LPARAM>(kind));
    openDialogs.push_back(dialog);
    ShowWindow(dialog, SW_SHOW);
}

} // namespace

void RaiseDialogs(HWND owner, Command kind, int count) {
    for (int i = 0; i < count; ++i)
        if (kind != Command::RaiseDialogs || openDialogs.size() < kDialogsAtATime)
            RaiseNext(owner, kind);
        else
            ++dialogsToCome;
}

bool DialogIsOpen() {
    return !openDialogs.empty();
}

bool HandleDialogMessage(MSG& message) {
    return std::ranges::any_of(openDialogs, [&](HWND dialog) { return IsDialogMessageA(dialog, &message); });
}

void Crash() {
    // Gone at once with a fault's exit code, as seen from outside; a real fault would bring up the system's
    // own crash dialog or debugger.
    TerminateProcess(GetCurrentProcess(), static_cast<UINT>(EXCEPTION_ACCESS_VIOLATION));
}

} // namespace standin
