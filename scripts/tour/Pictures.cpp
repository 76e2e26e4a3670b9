#include "Pictures.h"

#include "Hands.h"
#include "Report.h"

// clang-format off
#include <windows.h>
#include <objidl.h>
// clang-format on
#include <algorithm>
#include <commctrl.h>
// GDI+ headers call min and max unqualified.
namespace Gdiplus {
using std::max; // NOLINT(misc-unused-using-decls)
using std::min; // NOLINT(misc-unused-using-decls)
} // namespace Gdiplus
#include <gdiplus.h>

#include <cctype>
#include <vector>

namespace {

std::string folder;
ULONG_PTR gdiplus = 0;

struct Pixels {
    int width, height;
    std::vector<DWORD> colours;
    bool operator==(const Pixels&) const = default;
};

Pixels ScreenAt(const RECT& area) {
    Pixels pixels{area.right - area.left, area.bottom - area.top, {}};
    pixels.colours.resize(static_cast<size_t>(pixels.width) * static_cast<size_t>(pixels.height));
    BITMAPINFO info{};
    info.bmiHeader = {sizeof info.bmiHeader, pixels.width, -pixels.height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    HDC screen = GetDC(nullptr);
    HDC memory = CreateCompatibleDC(screen);
    void* bits = nullptr;
    HBITMAP bitmap = CreateDIBSection(memory, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    HGDIOBJ before = SelectObject(memory, bitmap);
    BitBlt(memory, 0, 0, pixels.width, pixels.height, screen, area.left, area.top, SRCCOPY);
    GdiFlush();
    std::copy_n(static_cast<DWORD*>(bits), pixels.colours.size(), pixels.colours.begin());
    SelectObject(memory, before);
    DeleteObject(bitmap);
    DeleteDC(memory);
    ReleaseDC(nullptr, screen);
    return pixels;
}

/// What is on the screen once it has stopped changing; what never stops is taken as it is at last.
Pixels SettledScreenAt(const RECT& area) {
    Pixels last = ScreenAt(area);
    for (int i = 0; i < 40; ++i) {
        Sleep(250);
        Pixels now = ScreenAt(area);
        if (now == last)
            break;
        last = std::move(now);
    }
    return last;
}

/// The caption of the page in front, as a part of a file name.
std::string PageInFront(HWND panel) {
    for (HWND child = GetWindow(GetParent(panel), GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
        if (!IsOfClass(child, "#32770") || !IsWindowVisible(child))
            continue;
        std::string caption = TextOf(child);
        std::erase(caption, '&');
        for (char& c : caption)
            c = std::isalnum(static_cast<unsigned char>(c)) ? static_cast<char>(std::tolower(c)) : '-';
        return caption;
    }
    return {};
}

} // namespace

void BeginPictures(const std::string& to) {
    folder = to;
    const Gdiplus::GdiplusStartupInput input;
    Gdiplus::GdiplusStartup(&gdiplus, &input, nullptr);
}

void EndPictures() {
    Gdiplus::GdiplusShutdown(gdiplus);
}

RECT BoundsOf(const std::set<HWND>& windows) {
    RECT all{};
    for (HWND window : windows) {
        RECT bounds;
        GetWindowRect(window, &bounds);
        UnionRect(&all, &all, &bounds);
    }
    return all;
}

void AwaitSettled(const RECT& area) {
    SettledScreenAt(area);
}

void Save(const std::string& name, RECT area) {
    const RECT whole{0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
    IntersectRect(&area, &area, &whole);
    Pixels pixels = SettledScreenAt(area);
    constexpr CLSID kPng{0x557cf406, 0x1a04, 0x11d3, {0x9a, 0x73, 0x00, 0x00, 0xf8, 0x1e, 0xf3, 0x2e}};
    Gdiplus::Bitmap bitmap(pixels.width, pixels.height, pixels.width * 4, PixelFormat32bppRGB,
                           reinterpret_cast<BYTE*>(pixels.colours.data()));
    const std::string path = folder + "\\" + name + ".png";
    if (bitmap.Save(std::wstring(path.begin(), path.end()).c_str(), &kPng, nullptr) != Gdiplus::Ok)
        Failed(path + " cannot be written");
    Log("%s\n", name);
}

void TakePictures(const std::string& name, HWND window, int page) {
    // Out of the way, or it brings up a tooltip.
    SetCursorPos(GetSystemMetrics(SM_CXSCREEN) - 1, 1);
    HWND panel = FindWindowExA(window, nullptr, WC_TABCONTROLA, nullptr);
    if (!panel) {
        Save(name, BoundsOf({window}));
        return;
    }
    const int tabs = static_cast<int>(SendMessageA(panel, TCM_GETITEMCOUNT, 0, 0));
    for (int tab = 0; tab < tabs; ++tab) {
        if (page >= 0 && tab != page)
            continue;
        SendMessageA(panel, TCM_SETCURFOCUS, static_cast<WPARAM>(tab), 0);
        const std::string caption = PageInFront(panel);
        Save(name + "-" + (caption.empty() ? std::to_string(tab + 1) : caption), BoundsOf({window}));
    }
}
