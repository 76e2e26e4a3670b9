#include "app/frmAbout.h"
#include "app/frmBrowse.h"
#include "app/frmMainMenu.h"
#include "app/frmSQLPath.h"

#include "config/frmStartingLocationPicker.h"
#include "gui/Accessible.h"
#include "gui/FormSlot.h"
#include "supervision/frmIPDetection.h"
#include "support/Keyboard.h"
#include "support/MessageBoxes.h"
#include "support/Surroundings.h"

#include <commctrl.h>

#include <map>

namespace {

using support::PressKey;

/// Every window, loaded and in front.
class KeyboardWalk : public testing::Test, protected support::Surroundings {
protected:
    KeyboardWalk() {
        settings::CreateDefaultSettings(kTools.INIPath());
        Set({{"KernoPath", servers.Path()}, {"MySQLPath", program.Path() + "\\"}});
        support::WriteFile(kerno.INIPath(), "Name=Server\r\nPriority=3\r\n");
        modServerControl::KernoPath(servers.Path());
    }

    support::MessageBoxes boxes;
};

std::string TextOf(HWND window) {
    char text[100] = "";
    GetWindowTextA(window, text, sizeof text);
    return text;
}

/// The control of the form that has the focus: a list's field belongs to the list.
HWND Focused() {
    HWND focus = GetFocus();
    char name[32] = "";
    if (GetParent(focus) && GetClassNameA(GetParent(focus), name, sizeof name) &&
        std::string(name) == "ComboBox")
        focus = GetParent(focus);
    return focus;
}

std::string Describe(HWND control) {
    return "control " + std::to_string(GetDlgCtrlID(control)) + " \"" + TextOf(control) + "\"";
}

LRESULT Code(HWND control) {
    return SendMessageA(control, WM_GETDLGCODE, 0, 0);
}

BOOL CALLBACK AddUsable(HWND child, LPARAM found) {
    const auto style = GetWindowLongPtrA(child, GWL_STYLE);
    const bool choice = Code(child) & DLGC_RADIOBUTTON;
    const bool chosen = !choice || SendMessageA(child, BM_GETCHECK, 0, 0) == BST_CHECKED;
    if ((style & WS_TABSTOP) && IsWindowVisible(child) && IsWindowEnabled(child) && chosen)
        reinterpret_cast<std::vector<HWND>*>(found)->push_back(child);
    return TRUE;
}

/// What Tab has to reach: every control that can be used, of a group of choices one.
std::vector<HWND> Usable(HWND form) {
    std::vector<HWND> controls;
    EnumChildWindows(form, AddUsable, reinterpret_cast<LPARAM>(&controls));
    return controls;
}

/// Goes once round the form with the key; where it stopped, each one seen and usable.
std::vector<HWND> Round(HWND form, std::initializer_list<int> held) {
    std::vector<HWND> stops;
    for (int press = 0; press < 200; ++press) {
        const HWND stop = Focused();
        if (!IsChild(form, stop) || !IsWindowVisible(stop) || !IsWindowEnabled(stop)) {
            ADD_FAILURE() << "the focus is on " << Describe(stop) << " behind "
                          << (stops.empty() ? "" : Describe(stops.back()));
            break;
        }
        if (!stops.empty() && stop == stops.front())
            break;
        EXPECT_EQ(std::ranges::count(stops, stop), 0) << Describe(stop);
        stops.push_back(stop);
        PressKey(VK_TAB, held);
    }
    return stops;
}

/// Space on every box and choice, back again: what it switches on and off must not take the focus along.
void PressBoxes(HWND form, const std::vector<HWND>& stops) {
    for (const HWND stop : stops) {
        if (!IsWindowVisible(stop) || !IsWindowEnabled(stop) || !(Code(stop) & DLGC_BUTTON) ||
            (Code(stop) & (DLGC_DEFPUSHBUTTON | DLGC_UNDEFPUSHBUTTON)))
            continue;
        for (int twice = 0; twice < 2; ++twice) {
            SetFocus(stop);
            SendMessageA(stop, BM_CLICK, 0, 0);
            const HWND focus = GetFocus();
            EXPECT_TRUE(IsChild(form, focus) && IsWindowVisible(focus) && IsWindowEnabled(focus))
                << "after " << Describe(stop);
        }
    }
}

/// Walks the window, and each of its pages, round by Tab and back by Shift+Tab.
void Walk(gui::Form& form) {
    SCOPED_TRACE(form.Caption());
    const HWND window = form.Window();
    const HWND tabs = FindWindowExA(window, nullptr, WC_TABCONTROLA, nullptr);
    const auto pages = tabs ? SendMessageA(tabs, TCM_GETITEMCOUNT, 0, 0) : 1;
    for (LRESULT page = 0; page < pages; ++page) {
        SCOPED_TRACE("page " + std::to_string(page));
        const auto forward = Round(window, {});
        auto expected = Usable(window);
        auto reached = forward;
        std::ranges::sort(expected);
        std::ranges::sort(reached);
        for (const HWND control : expected)
            EXPECT_TRUE(std::ranges::binary_search(reached, control))
                << Describe(control) << " is not reached";

        auto backward = Round(window, {VK_SHIFT});
        if (backward.size() > 1)
            std::reverse(backward.begin() + 1, backward.end());
        EXPECT_EQ(backward, forward);
        EXPECT_EQ(SendMessageA(window, WM_QUERYUISTATE, 0, 0) & UISF_HIDEFOCUS, 0) << "the focus is seen";

        std::map<std::string, HWND> names;
        for (const HWND control : forward) {
            const std::string name =
                control == tabs ? "tabs" : gui::AccessibleNamesOf(GetParent(control), {control})[0];
            EXPECT_NE(name, "") << Describe(control) << " has no name";
            EXPECT_TRUE(names.emplace(name, control).second)
                << Describe(control) << " and " << Describe(names[name]) << " are both \"" << name << "\"";
        }
        PressBoxes(window, forward);
        if (tabs)
            PressKey(VK_TAB, {VK_CONTROL});
    }
}

void WalkAndLeave(gui::Form& form, int key, bool leaves) {
    form.Show();
    ASSERT_TRUE(support::Settle());
    form.BringToFront();
    Walk(form);
    if (!key)
        return;
    PressKey(key);
    EXPECT_TRUE(support::Settle());
    EXPECT_EQ(!form.Loaded(), leaves) << form.Caption();
}

TEST_F(KeyboardWalk, EveryWindowCanBeUsedWithoutAMouse) {
    gui::Local<frmMainMenu> mainMenu(false);
    WalkAndLeave(*mainMenu, VK_ESCAPE, false);
    gui::Local<frmBrowse> serverFolder;
    WalkAndLeave(*serverFolder, VK_ESCAPE, true);
    gui::Local<frmSQLPath> mySQLFolder;
    WalkAndLeave(*mySQLFolder, VK_ESCAPE, true);
    gui::Local<frmAbout> about;
    WalkAndLeave(*about, VK_RETURN, true);
    gui::Local<frmServerStatus> status;
    WalkAndLeave(*status, VK_ESCAPE, false);
    gui::Local<frmIPDetection> detection;
    WalkAndLeave(*detection, VK_ESCAPE, true);
    gui::Local<frmMySQLSetUp> wizard;
    WalkAndLeave(*wizard, 0, false);
    gui::Local<frmAccountEditor> editor;
    WalkAndLeave(*editor, VK_ESCAPE, true);
}

TEST_F(KeyboardWalk, TheConfiguratorAndItsPicker) {
    gui::Local<frmServerSettings> held;
    frmServerSettings& configurator = *held;
    WalkAndLeave(configurator, 0, false);
    auto& page = configurator.newPlayer;
    gui::Local<frmStartingLocationPicker> picker(page.txtMapName, page.txtStartingX, page.txtStartingY);
    WalkAndLeave(*picker, VK_ESCAPE, true);
    configurator.BringToFront();
    PressKey(VK_ESCAPE);
    EXPECT_TRUE(support::Settle());
    EXPECT_FALSE(configurator.Loaded());
}

TEST_F(KeyboardWalk, TheControlPanel) {
    gui::Local<frmServerControl> panel;
    WalkAndLeave(*panel, 0, false);
    panel->Unload();
    EXPECT_TRUE(support::Settle());
}

TEST_F(KeyboardWalk, TheSearchBox) {
    gui::Local<frmAccountEditor> held;
    frmAccountEditor& editor = *held;
    editor.Show();
    ASSERT_TRUE(support::Settle());
    editor.cmdFind.Press();
    ASSERT_TRUE(editor.FindBox());
    WalkAndLeave(*editor.FindBox(), 0, false);
    editor.FindBox()->Unload();
    editor.Unload();
}

} // namespace
