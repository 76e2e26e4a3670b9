#pragma once

#include "StandinCommands.h"

#include <memory>
#include <random>
#include <string>
#include <type_traits>

namespace standin {

template <auto Release> struct GdiRelease {
    template <typename H> void operator()(H* object) const { Release(object); }
};
template <typename H, auto Release>
using Gdi = std::unique_ptr<std::remove_pointer_t<H>, GdiRelease<Release>>;

/// The windows of a stand-in: the application window that only carries the program's name, the main window
/// with the message box, and the character server's broadcast window.
class Console {
public:
    /// Makes the windows; shows them by `showCommand` as the program's starter wishes.
    Console(HINSTANCE instance, int showCommand, bool quiet);

private:
    static constexpr UINT_PTR kMessageTimer = 1;
    static constexpr UINT_PTR kClockTimer = 2;
    static constexpr COLORREF kPaper = RGB(24, 26, 31);

    static std::string FullName();
    static LRESULT CALLBACK MainProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    static LRESULT CALLBACK KeepingMemoProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam);
    void MakeChildren();
    void MakeBroadcastWindow();
    void MakeMenu();
    void Layout();
    void FollowMainWindow();
    void Run(Command command, int number);
    void Write(const std::string& line);
    void WriteStamped(const std::string& line);
    void Broadcast();
    void MessageTick();
    void ClockTick();
    void UpdateTitle();
    HWND MakeChild(HWND parent, const char* windowClass, const char* text, DWORD style, DWORD exStyle = 0,
                   int id = 0);

    /// The program's console.
    inline static Console* only_ = nullptr;
    HINSTANCE instance_;
    Gdi<HFONT, DeleteObject> font_;
    Gdi<HFONT, DeleteObject> headFont_;
    Gdi<HBRUSH, DeleteObject> paper_;
    HWND application_ = nullptr;
    HWND main_ = nullptr;
    HWND headline_ = nullptr;
    HWND memo_ = nullptr;
    WNDPROC memoProc_ = nullptr;
    HWND state_ = nullptr;
    HWND field_ = nullptr;
    HWND button_ = nullptr;
    HWND broadcast_ = nullptr;
    bool refusesToClose_ = false;
    std::size_t startLinesWritten_ = 0;
    int seconds_ = 0;
    int players_ = 0;
    std::mt19937 random_{std::random_device{}()};
};

} // namespace standin
