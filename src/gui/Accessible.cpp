#include "gui/Accessible.h"

#include "gui/WindowText.h"

#include <oleacc.h>

#include <initguid.h>

#include <algorithm>

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

/// What stands on a form, looked at once: asking each control for the next one takes its time.
struct Item {
    HWND window;
    RECT place{};
    bool isLabel = false;
    bool isButton = false;
    bool isGroup = false;
};
using Items = std::vector<Item>;

Item ItemOf(HWND window) {
    Item item{window};
    GetWindowRect(window, &item.place);
    char name[32] = "";
    GetClassNameA(window, name, sizeof name);
    item.isLabel = lstrcmpiA(name, "Static") == 0;
    item.isButton = lstrcmpiA(name, "Button") == 0;
    item.isGroup = item.isButton && (GetWindowLongPtrA(window, GWL_STYLE) & BS_TYPEMASK) == BS_GROUPBOX;
    return item;
}

/// In the order of the tabulator.
Items ItemsOn(HWND form) {
    Items items;
    for (HWND each = GetWindow(form, GW_CHILD); each; each = GetWindow(each, GW_HWNDNEXT))
        items.push_back(ItemOf(each));
    return items;
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

std::string GroupOf(const Items& items, const RECT& place) {
    const auto holds = [&place](const Item& item) {
        return item.isGroup && PtInRect(&item.place, {place.left, place.top});
    };
    const auto group = std::ranges::find_if(items, holds);
    return group == items.end() ? std::string() : PlainText(group->window);
}

std::string LabelOf(const Items& items, std::size_t at) {
    const Item& control = items[at];
    bool taken = false;
    while (at-- > 0) {
        const Item& each = items[at];
        if (!each.isLabel) {
            // Another box between the label and this one.
            taken = taken || (!each.isGroup && each.place.top < control.place.bottom &&
                              control.place.top < each.place.bottom);
            continue;
        }
        if (!Labels(each.place, control.place))
            continue;
        const std::string text = PlainText(each.window);
        if (text.empty())
            continue;
        const std::string toolTip = taken ? ToolTipOf(control.window) : std::string();
        return toolTip.empty() ? text : toolTip;
    }
    return ToolTipOf(control.window);
}

std::string NameOf(const Items& items, HWND control) {
    const auto item = std::ranges::find(items, control, &Item::window);
    if (item == items.end())
        return {};
    if (item->isButton)
        return PlainText(control);
    const std::string group = GroupOf(items, item->place);
    const std::string label = LabelOf(items, static_cast<std::size_t>(item - items.begin()));
    if (group.empty() || label.empty())
        return group + label;
    return group + ", " + label;
}

} // namespace

std::vector<std::string> AccessibleNamesOf(HWND form, const std::vector<HWND>& controls) {
    const Items items = ItemsOn(form);
    std::vector<std::string> names;
    for (const HWND control : controls)
        names.push_back(NameOf(items, control));
    return names;
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
