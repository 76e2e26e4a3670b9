#include "gui/Accessible.h"

#include "gui/WindowText.h"

#include <oleacc.h>

#include <initguid.h>

namespace gui {

namespace {

DEFINE_GUID(kAccPropServices, 0xb5f8350b, 0x0548, 0x48b1, 0xa6, 0xee, 0x88, 0xbd, 0x00, 0xb4, 0xa5, 0xe7);
DEFINE_GUID(kAccName, 0x608d3df8, 0x8128, 0x4aa7, 0xa4, 0x28, 0xf5, 0x5e, 0x49, 0x26, 0x72, 0x91);
DEFINE_GUID(kIAccPropServices, 0x6e26e776, 0x04f0, 0x495d, 0x80, 0xe4, 0x33, 0x30, 0x35, 0x2e, 0x31, 0x69);

/// Null where there is none; lives to the end of the program.
IAccPropServices* Service() {
    static IAccPropServices* const service = [] {
        void* made = nullptr;
        CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
        if (FAILED(
                CoCreateInstance(kAccPropServices, nullptr, CLSCTX_INPROC_SERVER, kIAccPropServices, &made)))
            made = nullptr;
        return static_cast<IAccPropServices*>(made);
    }();
    return service;
}

RECT PlaceOf(HWND window) {
    RECT place{};
    GetWindowRect(window, &place);
    return place;
}

bool IsOfClass(HWND window, const char* name) {
    char own[32] = "";
    GetClassNameA(window, own, sizeof own);
    return lstrcmpiA(own, name) == 0;
}

bool IsGroup(HWND window) {
    return IsOfClass(window, "Button") && (GetWindowLongPtrA(window, GWL_STYLE) & BS_TYPEMASK) == BS_GROUPBOX;
}

/// The window's text without the marks that are for the eye: the mnemonic's sign, a colon at the end.
std::string PlainText(HWND window) {
    std::string text = TextOf(window);
    std::erase(text, '&');
    const std::size_t end = text.find_last_not_of(" :");
    return text.substr(0, end == std::string::npos ? 0 : end + 1);
}

/// Whether a label there is read as that of the control: to its left in the same row, or right above it.
bool Labels(const RECT& label, const RECT& control) {
    const LONG middle = (label.top + label.bottom) / 2;
    const bool left = label.left < control.left && middle >= control.top && label.top < control.bottom &&
                      middle <= control.top + 2 * (label.bottom - label.top);
    const bool above = label.bottom <= control.top + 2 && label.left < control.right &&
                       control.left < label.right && control.top - label.bottom < label.bottom - label.top;
    return left || above;
}

std::string ToolTipOf(HWND control) {
    char text[256] = "";
    LoadStringA(GetModuleHandleA(nullptr), static_cast<UINT>(GetDlgCtrlID(control)), text, sizeof text);
    return text;
}

std::string GroupOf(HWND control) {
    const RECT place = PlaceOf(control);
    for (HWND each = GetWindow(control, GW_HWNDFIRST); each; each = GetWindow(each, GW_HWNDNEXT)) {
        const RECT box = PlaceOf(each);
        if (IsGroup(each) && PtInRect(&box, {place.left, place.top}))
            return PlainText(each);
    }
    return {};
}

std::string LabelOf(HWND control) {
    const RECT place = PlaceOf(control);
    bool taken = false;
    for (HWND each = GetWindow(control, GW_HWNDPREV); each; each = GetWindow(each, GW_HWNDPREV)) {
        const RECT label = PlaceOf(each);
        if (!IsOfClass(each, "Static")) {
            // Another box between the label and this one.
            taken = taken || (!IsGroup(each) && label.top < place.bottom && place.top < label.bottom);
            continue;
        }
        const std::string text = PlainText(each);
        if (text.empty() || !Labels(label, place))
            continue;
        const std::string toolTip = taken ? ToolTipOf(control) : std::string();
        return toolTip.empty() ? text : toolTip;
    }
    return ToolTipOf(control);
}

} // namespace

std::string AccessibleNameOf(HWND control) {
    if (IsOfClass(control, "Button"))
        return PlainText(control);
    const std::string group = GroupOf(control);
    const std::string label = LabelOf(control);
    if (group.empty() || label.empty())
        return group + label;
    return group + ", " + label;
}

void SetAccessibleName(HWND control, const std::string& name) {
    const std::wstring wide = [&] {
        std::wstring text(name.size(), L'\0');
        text.resize(static_cast<std::size_t>(MultiByteToWideChar(CP_ACP, 0, name.data(),
                                                                 static_cast<int>(name.size()), text.data(),
                                                                 static_cast<int>(text.size()))));
        return text;
    }();
    if (!Service() || name.empty())
        return;
    Service()->SetHwndPropStr(control, static_cast<DWORD>(OBJID_CLIENT), CHILDID_SELF, kAccName,
                              wide.c_str());
}

void ForgetAccessibleName(HWND control) {
    if (Service())
        Service()->ClearHwndProps(control, static_cast<DWORD>(OBJID_CLIENT), CHILDID_SELF, &kAccName, 1);
}

} // namespace gui
