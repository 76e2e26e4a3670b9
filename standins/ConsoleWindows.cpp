#include "Console.h"
#include "Profile.h"

namespace standin {

namespace {

constexpr int kMargin = 8;
constexpr int kHeadHeight = 26;
constexpr int kRowHeight = 24;
constexpr int kButtonWidth = 110;

const char* const kBroadcastClass = "TfrmMain";

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

std::string Console::FullName() {
    return std::string("Kerno ") + kProfile.name + " Server";
}

Console::Console(HINSTANCE instance, int showCommand, bool quiet)
    : instance_(instance), font_(MakeFont(13, FW_NORMAL, "Consolas", FIXED_PITCH | FF_MODERN)),
      headFont_(MakeFont(15, FW_BOLD, "Tahoma", VARIABLE_PITCH | FF_SWISS)),
      paper_(CreateSolidBrush(kPaper)) {
    only_ = this;
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

} // namespace standin
