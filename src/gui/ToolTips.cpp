#include "gui/ToolTips.h"

#include <commctrl.h>

namespace gui {

namespace {

constexpr std::size_t kLongestToolTip = 1024;
constexpr LPARAM kWidestToolTip = 400;

} // namespace

void AddToolTips(HWND form, const std::vector<HWND>& controls) {
    HWND toolTips = nullptr;
    for (const HWND control : controls) {
        char text[kLongestToolTip];
        const auto id = static_cast<UINT>(GetDlgCtrlID(control));
        if (!LoadStringA(GetModuleHandleA(nullptr), id, text, sizeof text))
            continue;
        if (!toolTips)
            toolTips = CreateWindowExA(WS_EX_TOPMOST, TOOLTIPS_CLASSA, nullptr, WS_POPUP | TTS_ALWAYSTIP,
                                       CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, form,
                                       nullptr, nullptr, nullptr);
        TTTOOLINFOA info{};
        // The size without the last member is the one that every version of the control takes.
        info.cbSize = TTTOOLINFOA_V1_SIZE;
        info.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
        info.hwnd = form;
        info.uId = reinterpret_cast<UINT_PTR>(control);
        info.lpszText = text;
        SendMessageA(toolTips, TTM_ADDTOOLA, 0, reinterpret_cast<LPARAM>(&info));
    }
    if (toolTips)
        SendMessageA(toolTips, TTM_SETMAXTIPWIDTH, 0, kWidestToolTip);
}

} // namespace gui
