#include "Console.h"

#include "Profile.h"
#include "Trouble.h"

#include <algorithm>
#include <cstdio>

namespace standin {

namespace {

constexpr COLORREF kInk = RGB(214, 219, 227);
// A box that nobody empties would grow for ever.
constexpr int kMemoLimit = 60'000;

std::string Format(const char* format, int a, int b = 0, int c = 0, int d = 0) {
    char text[120];
    std::snprintf(text, sizeof text, format, a, b, c, d);
    return text;
}

std::string Uptime(int seconds) {
    return Format("%02d:%02d:%02d:%02d", seconds / 86400, seconds / 3600 % 24, seconds / 60 % 60,
                  seconds % 60);
}

} // namespace

LRESULT CALLBACK Console::MainProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    // Before the constructor has its handle the window has nothing to do.
    if (!only_ || only_->main_ != window)
        return DefWindowProcA(window, message, wParam, lParam);
    return only_->Handle(message, wParam, lParam);
}

LRESULT Console::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == CommandMessage()) {
        Run(static_cast<Command>(wParam), static_cast<int>(lParam));
        return 0;
    }
    switch (message) {
    case WM_SIZE:
        Layout();
        return 0;
    case WM_WINDOWPOSCHANGED:
        FollowMainWindow();
        break;
    case WM_CTLCOLORSTATIC: {
        const HDC dc = reinterpret_cast<HDC>(wParam);
        const HWND control = reinterpret_cast<HWND>(lParam);
        if (control == memo_) {
            SetTextColor(dc, kInk);
            SetBkColor(dc, kPaper);
            return reinterpret_cast<LRESULT>(paper_.get());
        }
        const LRESULT brush = DefWindowProcA(main_, message, wParam, lParam);
        if (control == headline_)
            SetTextColor(dc, kProfile.colour);
        return brush;
    }
    case WM_COMMAND:
        if (lParam && LOWORD(wParam) == kSendButton)
            Broadcast();
        else if (!lParam && LOWORD(wParam) >= kMenuStart) {
            const auto command = static_cast<Command>(LOWORD(wParam));
            const bool countsTens = command == Command::WriteLines || command == Command::Hang;
            const bool toggled = command == Command::RefuseToClose && refusesToClose_;
            Run(command, countsTens ? 10 : toggled ? 0 : 1);
        }
        return 0;
    case WM_TIMER:
        if (wParam == kMessageTimer)
            MessageTick();
        else
            ClockTick();
        return 0;
    case WM_CLOSE:
        if (refusesToClose_) {
            WriteStamped("Asked to close; refused.");
            return 0;
        }
        break;
    case WM_DESTROY:
        DestroyWindow(application_);
        PostQuitMessage(0);
        return 0;
    }
    return DefWindowProcA(main_, message, wParam, lParam);
}

void Console::Run(Command command, int number) {
    switch (command) {
    case Command::WriteLines:
        for (int i = 1; i <= number; ++i)
            Write(Format("Line %d", i));
        break;
    case Command::RaiseDialogs:
    case Command::RaiseTitledDialog:
    case Command::RaiseStubbornDialog:
        RaiseDialogs(main_, command, command == Command::RaiseDialogs ? number : 1);
        break;
    case Command::RefuseToClose:
        refusesToClose_ = number != 0;
        CheckMenuItem(GetMenu(main_), static_cast<UINT>(Command::RefuseToClose),
                      static_cast<UINT>(refusesToClose_ ? MF_CHECKED : MF_UNCHECKED));
        break;
    case Command::Hang:
        Sleep(static_cast<DWORD>(number) * 1000);
        break;
    case Command::Crash:
        Crash();
        break;
    case Command::Broadcast:
        Broadcast();
        break;
    case Command::KeepMessages:
        memoProc_ = reinterpret_cast<WNDPROC>(
            SetWindowLongPtrA(memo_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&KeepingMemoProc)));
        break;
    }
}

LRESULT CALLBACK Console::KeepingMemoProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_SETTEXT)
        return FALSE;
    return CallWindowProcA(only_->memoProc_, window, message, wParam, lParam);
}

void Console::Write(const std::string& line) {
    if (const int length = GetWindowTextLengthA(memo_); length > kMemoLimit) {
        SendMessageA(memo_, EM_SETSEL, 0, length / 2);
        SendMessageA(memo_, EM_REPLACESEL, FALSE, reinterpret_cast<LPARAM>(""));
    }
    const int end = GetWindowTextLengthA(memo_);
    SendMessageA(memo_, EM_SETSEL, static_cast<WPARAM>(end), end);
    SendMessageA(memo_, EM_REPLACESEL, FALSE, reinterpret_cast<LPARAM>((line + "\r\n").c_str()));
}

void Console::WriteStamped(const std::string& line) {
    SYSTEMTIME time;
    GetLocalTime(&time);
    Write(Format("[%02d:%02d:%02d] ", time.wHour, time.wMinute, time.wSecond) + line);
}

void Console::Broadcast() {
    if (!field_)
        return;
    std::string text(static_cast<std::size_t>(GetWindowTextLengthA(field_)) + 1, '\0');
    text.resize(static_cast<std::size_t>(GetWindowTextA(field_, text.data(), static_cast<int>(text.size()))));
    if (text.empty())
        return;
    SetWindowTextA(field_, "");
    WriteStamped(kBroadcastMark + text);
}

void Console::MessageTick() {
    // A server that shows an error waits for the answer.
    if (DialogIsOpen())
        return;
    if (startLinesWritten_ < kProfile.startLines.size()) {
        WriteStamped(kProfile.startLines[startLinesWritten_++]);
        return;
    }
    const auto& lines = kProfile.randomLines;
    const char* line = lines[random_() % lines.size()];
    WriteStamped(Format(line, static_cast<int>(100 + random_() % 900)));
    SetTimer(main_, kMessageTimer, static_cast<UINT>(800 + random_() % 3200), nullptr);
}

void Console::ClockTick() {
    if (DialogIsOpen())
        return;
    ++seconds_;
    SetWindowTextA(state_, ("Up " + Uptime(seconds_)).c_str());
    if (kProfile.hasPlayers) {
        if (seconds_ > 3 && seconds_ % 3 == 0)
            players_ = std::max(0, players_ + static_cast<int>(random_() % 5) - (players_ > 20 ? 2 : 1));
        UpdateTitle();
    }
}

void Console::UpdateTitle() {
    SetWindowTextA(
        main_,
        (FullName() + " " + Uptime(seconds_) + Format(" Current Players (Count: %d)", players_)).c_str());
}

} // namespace standin
