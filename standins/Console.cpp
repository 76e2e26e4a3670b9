#include "Console.h"

#include "Profile.h"
#include "Trouble.h"

#include <algorithm>
#include <cstdio>

namespace standin {

namespace {

constexpr UINT_PTR kMessageTimer = 1;
constexpr UINT_PTR kClockTimer = 2;
constexpr COLORREF kPaper = RGB(24, 26, 31);
constexpr COLORREF kInk = RGB(214, 219, 227);
constexpr int kMargin = 8;
constexpr int kHeadHeight = 26;
constexpr int kRowHeight = 24;
constexpr int kButtonWidth = 110;
// A box that nobody empties would grow for ever.
constexpr int kMemoLimit = 60'000;

const char* const kBroadcastClass = "TfrmMain";

Console* console = nullptr;

/// The controls carry the class names of the real servers' tool-kit, and are the system's own underneath.
void RegisterControl(HINSTANCE instance, const char* name, const char* like) {
    WNDCLASSEXA control{};
    control.cbSize = sizeof control;
    GetClassInfoExA(nullptr, like, &control);
    control.hInstance = instance;
    control.lpszClassName = name;
    RegisterClassExA(&control);
}

void RegisterWindow(HINSTANCE instance, const char* name, WNDPROC procedure, HICON icon) {
    WNDCLASSEXA window{};
    window.cbSize = sizeof window;
    window.lpfnWndProc = procedure;
    window.hInstance = instance;
    window.hIcon = icon;
    window.hCursor = LoadCursorA(nullptr, IDC_ARROW);
    window.hbrBackground = GetSysColorBrush(COLOR_BTNFACE);
    window.lpszClassName = name;
    RegisterClassExA(&window);
}

HFONT MakeFont(int height, int weight, const char* face, BYTE family) {
    return CreateFontA(-height, 0, 0, 0, weight, FALSE, FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                       CLIP_DEFAULT_PRECIS, CLEARTYPE_QUALITY, family, face);
}

/// A square in the server's colour with its first letter.
HICON MakeIcon() {
    constexpr int kSize = 32;
    const HDC screen = GetDC(nullptr);
    const HDC dc = CreateCompatibleDC(screen);
    const Gdi<HBITMAP, DeleteObject> colour(CreateCompatibleBitmap(screen, kSize, kSize));
    const Gdi<HBITMAP, DeleteObject> mask(CreateBitmap(kSize, kSize, 1, 1, nullptr));
    const Gdi<HBRUSH, DeleteObject> brush(CreateSolidBrush(kProfile.colour));
    const Gdi<HFONT, DeleteObject> font(MakeFont(24, FW_BOLD, "Tahoma", VARIABLE_PITCH | FF_SWISS));
    RECT area{0, 0, kSize, kSize};
    const HGDIOBJ before = SelectObject(dc, mask.get());
    PatBlt(dc, 0, 0, kSize, kSize, BLACKNESS);
    SelectObject(dc, colour.get());
    FillRect(dc, &area, brush.get());
    const HGDIOBJ fontBefore = SelectObject(dc, font.get());
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, RGB(255, 255, 255));
    DrawTextA(dc, kProfile.name, 1, &area, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
    SelectObject(dc, fontBefore);
    SelectObject(dc, before);
    DeleteDC(dc);
    ReleaseDC(nullptr, screen);
    ICONINFO icon{TRUE, 0, 0, mask.get(), colour.get()};
    return CreateIconIndirect(&icon);
}

std::string FullName() {
    return std::string("Kerno ") + kProfile.name + " Server";
}

std::string Format(const char* format, int a, int b = 0, int c = 0, int d = 0) {
    char text[120];
    std::snprintf(text, sizeof text, format, a, b, c, d);
    return text;
}

std::string Uptime(int seconds) {
    return Format("%02d:%02d:%02d:%02d", seconds / 86400, seconds / 3600 % 24, seconds / 60 % 60,
                  seconds % 60);
}

/// The broadcast window has nothing but its button.
LRESULT CALLBACK BroadcastProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_COMMAND && LOWORD(wParam) == kSendButton) {
        // Whichever zone servers there are; other windows of the class do not know the message.
        for (HWND zone = nullptr; (zone = FindWindowExA(nullptr, zone, kBroadcastClass, nullptr));)
            PostMessageA(zone, CommandMessage(), static_cast<WPARAM>(Command::Broadcast), 0);
        return 0;
    }
    if (message == WM_CLOSE)
        return 0;
    return DefWindowProcA(window, message, wParam, lParam);
}

} // namespace

Console::Console(HINSTANCE instance, int showCommand, bool quiet)
    : instance_(instance), font_(MakeFont(13, FW_NORMAL, "Consolas", FIXED_PITCH | FF_MODERN)),
      headFont_(MakeFont(15, FW_BOLD, "Tahoma", VARIABLE_PITCH | FF_SWISS)),
      paper_(CreateSolidBrush(kPaper)) {
    console = this;
    const HICON icon = MakeIcon();
    RegisterControl(instance_, "TMemo", "EDIT");
    RegisterControl(instance_, "TEdit", "EDIT");
    RegisterControl(instance_, "TButton", "BUTTON");
    RegisterWindow(instance_, "TApplication", DefWindowProcA, icon);
    RegisterWindow(instance_, kProfile.mainWindowClass, MainProc, icon);

    application_ =
        CreateWindowExA(WS_EX_TOOLWINDOW, "TApplication", (std::string("Kerno ") + kProfile.name).c_str(),
                        WS_POPUP | WS_VISIBLE, 0, 0, 0, 0, nullptr, nullptr, instance_, nullptr);
    main_ = CreateWindowExA(0, kProfile.mainWindowClass, FullName().c_str(),
                            WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, kProfile.corner.x, kProfile.corner.y, 480,
                            330, nullptr, nullptr, instance_, nullptr);
    MakeMenu();
    MakeChildren();
    if (kProfile.hasBroadcastWindow) {
        RegisterWindow(instance_, kBroadcastClass, BroadcastProc, icon);
        MakeBroadcastWindow();
    }
    if (kProfile.hasPlayers)
        UpdateTitle();
    Layout();
    SetPropA(main_, kShowCommandProperty, reinterpret_cast<HANDLE>(static_cast<INT_PTR>(showCommand)));
    ShowWindow(main_, showCommand);
    if (!quiet) {
        SetTimer(main_, kMessageTimer, 250, nullptr);
        SetTimer(main_, kClockTimer, 1000, nullptr);
    }
}

HWND Console::MakeChild(HWND parent, const char* windowClass, const char* text, DWORD style, DWORD exStyle,
                        int id) {
    const HWND child =
        CreateWindowExA(exStyle, windowClass, text, WS_CHILD | WS_VISIBLE | style, 0, 0, 0, 0, parent,
                        reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), instance_, nullptr);
    SendMessageA(child, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT)), FALSE);
    return child;
}

void Console::MakeChildren() {
    headline_ = MakeChild(main_, "STATIC", FullName().c_str(), SS_CENTERIMAGE);
    SendMessageA(headline_, WM_SETFONT, reinterpret_cast<WPARAM>(headFont_.get()), FALSE);
    memo_ = MakeChild(main_, "TMemo", "", WS_VSCROLL | ES_MULTILINE | ES_READONLY | ES_AUTOVSCROLL,
                      WS_EX_CLIENTEDGE);
    SendMessageA(memo_, WM_SETFONT, reinterpret_cast<WPARAM>(font_.get()), FALSE);
    SendMessageA(memo_, EM_SETLIMITTEXT, 0, 0);
    state_ = MakeChild(main_, "STATIC", "", SS_CENTERIMAGE | SS_RIGHT);
    if (kProfile.hasPlayers) {
        field_ = MakeChild(main_, "TEdit", "", WS_TABSTOP | ES_AUTOHSCROLL, WS_EX_CLIENTEDGE);
        button_ = MakeChild(main_, "TButton", "Send Message", WS_TABSTOP, 0, kSendButton);
    }
}

void Console::MakeBroadcastWindow() {
    broadcast_ = CreateWindowExA(WS_EX_TOOLWINDOW, kBroadcastClass, (FullName() + " - Broadcast").c_str(),
                                 WS_POPUP | WS_CAPTION, 0, 0, 370, 70, main_, nullptr, instance_, nullptr);
    RECT area;
    GetClientRect(broadcast_, &area);
    const HWND text =
        MakeChild(broadcast_, "STATIC", "Sends the text typed at the zone server", SS_CENTERIMAGE);
    MoveWindow(text, kMargin, 0, area.right - kButtonWidth - 3 * kMargin, area.bottom, FALSE);
    const HWND button = MakeChild(broadcast_, "TButton", "Send Message", 0, 0, kSendButton);
    MoveWindow(button, area.right - kButtonWidth - kMargin, (area.bottom - kRowHeight) / 2, kButtonWidth,
               kRowHeight, FALSE);
}

void Console::MakeMenu() {
    struct Entry {
        Command command;
        const char* caption;
    };
    constexpr Entry kEntries[] = {
        {Command::WriteLines, "&Write ten lines"},
        {Command::RaiseDialogs, "Raise an &error dialog"},
        {Command::RaiseTitledDialog, "Raise an error dialog with the server's &name"},
        {Command::RaiseStubbornDialog, "Raise an error dialog that does not &close"},
        {Command::RefuseToClose, "&Refuse to close"},
        {Command::Hang, "&Hang for ten seconds"},
        {Command::Crash, "Crash"},
    };
    const HMENU trouble = CreatePopupMenu();
    for (const Entry& entry : kEntries)
        AppendMenuA(trouble, MF_STRING, static_cast<UINT_PTR>(entry.command), entry.caption);
    const HMENU bar = CreateMenu();
    AppendMenuA(bar, MF_POPUP, reinterpret_cast<UINT_PTR>(trouble), "&Trouble");
    SetMenu(main_, bar);
}

void Console::Layout() {
    RECT area;
    GetClientRect(main_, &area);
    const int width = area.right - 2 * kMargin;
    const int half = width / 2;
    const int foot = field_ ? kRowHeight + 2 * kMargin : kMargin;
    const int bottom = area.bottom - foot;
    MoveWindow(headline_, kMargin, kMargin / 2, half, kHeadHeight, TRUE);
    MoveWindow(state_, kMargin + half, kMargin / 2, width - half, kHeadHeight, TRUE);
    MoveWindow(memo_, kMargin, kHeadHeight + kMargin, width, bottom - kHeadHeight - kMargin, TRUE);
    if (field_) {
        const int fieldWidth = width - kButtonWidth - kMargin;
        MoveWindow(field_, kMargin, bottom + kMargin, fieldWidth, kRowHeight, TRUE);
        MoveWindow(button_, 2 * kMargin + fieldWidth, bottom + kMargin, kButtonWidth, kRowHeight, TRUE);
    }
}

void Console::FollowMainWindow() {
    if (!broadcast_)
        return;
    RECT area;
    GetWindowRect(main_, &area);
    const bool visible = IsWindowVisible(main_) && !IsIconic(main_);
    SetWindowPos(broadcast_, nullptr, area.left, area.bottom, 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE |
                     static_cast<UINT>(visible ? SWP_SHOWWINDOW : SWP_HIDEWINDOW));
}

LRESULT CALLBACK Console::MainProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    // Before the constructor has its handle the window has nothing to do.
    if (!console || console->main_ != window)
        return DefWindowProcA(window, message, wParam, lParam);
    return console->Handle(message, wParam, lParam);
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
    return CallWindowProcA(console->memoProc_, window, message, wParam, lParam);
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
