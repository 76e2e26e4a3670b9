#include "gui/ToolTips.h"

#include <commctrl.h>

#include <unordered_map>

namespace gui {

namespace {

constexpr std::size_t kLongestToolTip = 1024;
constexpr LPARAM kWidestToolTip = 400;

bool LoadToolTip(UINT_PTR id, char (&text)[kLongestToolTip]) {
    return LoadStringA(GetModuleHandleA(nullptr), static_cast<UINT>(id), text, sizeof text) > 0;
}

TTTOOLINFOA Tool(HWND form, UINT flags, UINT_PTR id) {
    TTTOOLINFOA info{};
    // The size without the last member is the one that every version of the control takes.
    info.cbSize = TTTOOLINFOA_V1_SIZE;
    info.uFlags = flags;
    info.hwnd = form;
    info.uId = id;
    return info;
}

void Add(HWND toolTips, TTTOOLINFOA tool, const char* text) {
    tool.lpszText = const_cast<char*>(text);
    SendMessageA(toolTips, TTM_ADDTOOLA, 0, reinterpret_cast<LPARAM>(&tool));
}

/// A control that is disabled gets no mouse messages; its form gets them in its stead. So each control has a
/// second tool, the place of the control on the form.
TTTOOLINFOA PlaceOf(HWND form, UINT_PTR id) {
    TTTOOLINFOA tool = Tool(form, 0, id);
    GetWindowRect(GetDlgItem(form, static_cast<int>(id)), &tool.rect);
    MapWindowPoints(nullptr, form, reinterpret_cast<POINT*>(&tool.rect), 2);
    return tool;
}

/// Tells a place's text when the tooltip is about to be shown, and none where the control is hidden. It asks
/// in the characters of the form's class.
bool Answer(HWND form, NMHDR& header) {
    static char text[kLongestToolTip];
    static wchar_t wide[kLongestToolTip];
    const bool asksWide = header.code == static_cast<UINT>(TTN_GETDISPINFOW);
    if (!asksWide && header.code != static_cast<UINT>(TTN_GETDISPINFOA))
        return false;
    const HWND control = GetDlgItem(form, static_cast<int>(header.idFrom));
    if (!IsWindowVisible(control) || !LoadToolTip(header.idFrom, text))
        text[0] = '\0';
    if (asksWide) {
        MultiByteToWideChar(CP_ACP, 0, text, -1, wide, kLongestToolTip);
        reinterpret_cast<NMTTDISPINFOW&>(header).lpszText = wide;
    } else {
        reinterpret_cast<NMTTDISPINFOA&>(header).lpszText = text;
    }
    return true;
}

/// The window with the tooltips of each form that has some.
std::unordered_map<HWND, HWND>& AllToolTips() {
    static std::unordered_map<HWND, HWND> toolTips;
    return toolTips;
}

HWND FindToolTips(HWND form) {
    const auto found = AllToolTips().find(form);
    return found == AllToolTips().end() ? nullptr : found->second;
}

HWND ToolTipsOf(HWND form) {
    HWND& toolTips = AllToolTips()[form];
    if (!toolTips) {
        toolTips =
            CreateWindowExA(WS_EX_TOPMOST, TOOLTIPS_CLASSA, nullptr, WS_POPUP | TTS_ALWAYSTIP, CW_USEDEFAULT,
                            CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, form, nullptr, nullptr, nullptr);
        SendMessageA(toolTips, TTM_SETMAXTIPWIDTH, 0, kWidestToolTip);
    }
    return toolTips;
}

TTTOOLINFOA ToolOf(HWND form, HWND control) {
    return Tool(form, TTF_IDISHWND, reinterpret_cast<UINT_PTR>(control));
}

} // namespace

void AddToolTips(HWND form, const std::vector<HWND>& controls) {
    for (const HWND control : controls) {
        char text[kLongestToolTip];
        const auto id = static_cast<UINT_PTR>(GetDlgCtrlID(control));
        if (!LoadToolTip(id, text))
            continue;
        Add(ToolTipsOf(form), ToolOf(form, control), text);
        Add(ToolTipsOf(form), PlaceOf(form, id), LPSTR_TEXTCALLBACKA);
    }
}

void SetToolTip(HWND form, HWND control, const std::string& text) {
    const HWND toolTips = ToolTipsOf(form);
    TTTOOLINFOA tool = ToolOf(form, control);
    if (!SendMessageA(toolTips, TTM_GETTOOLINFOA, 0, reinterpret_cast<LPARAM>(&tool)))
        return Add(toolTips, ToolOf(form, control), text.c_str());
    tool.lpszText = const_cast<char*>(text.c_str());
    SendMessageA(toolTips, TTM_UPDATETIPTEXTA, 0, reinterpret_cast<LPARAM>(&tool));
}

void RelayToToolTips(const MSG& message) {
    const bool isOfMouse = message.message == WM_NCMOUSEMOVE ||
                           (message.message >= WM_MOUSEFIRST && message.message <= WM_MOUSELAST);
    if (!isOfMouse)
        return;
    HWND form = message.hwnd;
    while (form && !FindToolTips(form))
        form = GetAncestor(form, GA_PARENT);
    if (form)
        SendMessageA(FindToolTips(form), TTM_RELAYEVENT, 0, reinterpret_cast<LPARAM>(&message));
}

bool AnswerToolTips(HWND form, NMHDR& header) {
    return header.hwndFrom && header.hwndFrom == FindToolTips(form) && Answer(form, header);
}

void MoveToolTips(HWND form) {
    const HWND toolTips = FindToolTips(form);
    if (!toolTips)
        return;
    for (HWND control = GetWindow(form, GW_CHILD); control; control = GetWindow(control, GW_HWNDNEXT)) {
        TTTOOLINFOA place = PlaceOf(form, static_cast<UINT_PTR>(GetDlgCtrlID(control)));
        SendMessageA(toolTips, TTM_NEWTOOLRECTA, 0, reinterpret_cast<LPARAM>(&place));
    }
}

void ForgetToolTips(HWND form) {
    AllToolTips().erase(form);
}

} // namespace gui
