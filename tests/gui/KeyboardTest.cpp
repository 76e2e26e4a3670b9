#include "frmSample.h"

#include "gui/Placement.h"
#include "gui/Scrolling.h"
#include "support/Keyboard.h"
#include "support/Test.h"
#include "support/Wait.h"

#include <richedit.h>

namespace {

using support::PressKey;
using support::WaitUntil;

/// The control that the keyboard reaches; null when it is hidden, disabled or not of the form.
HWND Reached(const frmSample& form) {
    const HWND focus = GetFocus();
    return IsChild(form.Window(), focus) && IsWindowVisible(focus) && IsWindowEnabled(focus) ? focus
                                                                                             : nullptr;
}

TEST(Keyboard, TheFocusLeavesWhatIsDisabledOrHidden) {
    frmSample form;
    form.Show();
    const std::pair<gui::Control&, std::function<void()>> cases[] = {
        {form.cmdPress, [&] { form.cmdPress.Enabled(false); }},
        {form.txtText, [&] { form.txtText.Visible(false); }},
        {form.cboNames, [&] { form.cboNames.Enabled(false); }},
        {form.firstPage.txtFirst, [&] { form.tabPages.Tab(1); }},
        {form.secondPage.cmdSecond, [&] { PressKey(VK_TAB, {VK_CONTROL}); }},
        {form.firstPage.cmdSecond, [&] { form.firstPage.cmdSecond.Enabled(false); }},
    };
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        const auto& [control, cause] = cases[i];
        control.SetFocus();
        cause();
        EXPECT_TRUE(Reached(form)) << "case " << i;
        EXPECT_NE(GetFocus(), control.Window()) << "case " << i;
    }
    EXPECT_EQ(form.tabPages.Tab(), 0) << "the fifth case turned the page back";
}

TEST(Keyboard, CtrlTabTurnsThePagesFromAnywhereAndGoesWithThem) {
    frmSample form;
    form.Show();
    for (gui::Control* from :
         {static_cast<gui::Control*>(&form.txtLog), static_cast<gui::Control*>(&form.tabPages),
          static_cast<gui::Control*>(&form.lstNames)}) {
        from->SetFocus();
        const int before = form.tabPages.Tab();
        PressKey(VK_TAB, {VK_CONTROL});
        EXPECT_EQ(form.tabPages.Tab(), 1 - before);
        EXPECT_EQ(Reached(form), from->Window()) << "who does not sit in a page stays";
    }
    form.tabPages.Tab(0);
    form.firstPage.cmdSecond.SetFocus();
    for (SamplePage* page : {&form.secondPage, &form.firstPage}) {
        PressKey(VK_TAB, {VK_CONTROL, VK_SHIFT});
        EXPECT_EQ(Reached(form), page->txtFirst.Window());
    }
    PressKey('A');
    EXPECT_EQ(form.firstPage.txtFirst.Text(), "a");
    EXPECT_EQ(form.secondPage.txtFirst.Text(), "");
}

TEST(Keyboard, AFormThatComesToTheFrontHasTheKeyboardAlsoWhenItsControlWasDisabledMeanwhile) {
    frmSample form;
    frmSample other;
    form.Show();
    form.txtText.SetFocus();
    other.Show();
    ASSERT_TRUE(WaitUntil([&] { return GetActiveWindow() == other.Window(); }));
    form.txtText.Enabled(false);
    form.BringToFront();
    EXPECT_TRUE(WaitUntil([&] { return Reached(form) != nullptr; }));
}

TEST(Keyboard, AFormBehindAModalOneBringsThatToTheFront) {
    frmSample owner;
    frmSample modal;
    owner.Show();
    owner.BringToFront();
    bool reached = false;
    modal.whenTicking = [&] {
        owner.BringToFront();
        reached = GetActiveWindow() == modal.Window() && Reached(modal);
        modal.Unload();
    };
    modal.tmrTick.Enabled(true);
    support::Run(modal.ShowModal(owner));
    EXPECT_TRUE(reached);
}

TEST(Keyboard, AModalFormOverAHiddenOneHasAButtonInTheTaskBar) {
    frmSample owner;
    owner.Load();
    for (const bool seen : {false, true}) {
        owner.Visible(seen);
        frmSample modal;
        modal.Load(&owner, true);
        EXPECT_EQ((GetWindowLongPtrA(modal.Window(), GWL_EXSTYLE) & WS_EX_APPWINDOW) != 0, !seen);
    }
}

TEST(Keyboard, TheWheelTurnsAListOnlyWhileItIsOpen) {
    frmSample form;
    form.Show();
    for (const char* name : {"a", "b", "c"})
        form.cboNames.AddItem(name);
    form.cboNames.ListIndex(1);
    form.cboNames.SetFocus();
    for (const HWND target : {form.cboNames.Window(), GetFocus()})
        SendMessageA(target, WM_MOUSEWHEEL, MAKEWPARAM(0, static_cast<WORD>(-WHEEL_DELTA)), 0);
    EXPECT_EQ(form.cboNames.ListIndex(), 1);
}

TEST(Keyboard, EveryButtonOfTheMousePressesThePicture) {
    frmSample form;
    form.Load();
    for (const UINT press : {WM_LBUTTONDOWN, WM_RBUTTONDOWN, WM_MBUTTONDOWN}) {
        form.events.clear();
        SendMessageA(form.picMap.Window(), press, 0, MAKELPARAM(3, 3));
        EXPECT_EQ(form.events, std::vector<int>{IDC_frmSample_picMap}) << press;
    }
}

TEST(Keyboard, AMessageBoxOpensItsMenuByKeyAndByTheRightButton) {
    frmSample form;
    form.Show();
    form.txtLog.SetFocus();
    PressKey(VK_F10, {VK_SHIFT});
    SendMessageA(form.txtLog.Window(), WM_CONTEXTMENU, reinterpret_cast<WPARAM>(form.txtLog.Window()), -1);
    SendMessageA(form.txtLog.Window(), WM_RBUTTONDOWN, MK_RBUTTON, MAKELPARAM(7, 9));
    SendMessageA(form.txtLog.Window(), WM_RBUTTONUP, 0, MAKELPARAM(7, 9));
    ASSERT_EQ(form.menusAt.size(), 3u);
    POINT corner{};
    ClientToScreen(form.txtLog.Window(), &corner);
    for (const POINT at : {form.menusAt[0], form.menusAt[1]}) {
        EXPECT_EQ(at.x, corner.x);
        EXPECT_EQ(at.y, corner.y);
    }
    EXPECT_EQ(form.menusAt[2].x, corner.x + 7);
    EXPECT_EQ(form.menusAt[2].y, corner.y + 9);
}

TEST(Keyboard, AMessageBoxShowsWholeLines) {
    frmSample form;
    form.Show();
    for (int line = 0; line < 40; ++line)
        form.txtLog.Append("\r\nline " + std::to_string(line));
    const RECT bounds = form.txtLog.Bounds();
    for (int height = 60; height < 90; ++height) {
        form.txtLog.Move(bounds.left, bounds.top, bounds.right - bounds.left, height);
        form.txtLog.Append("\r\nmore");
        const HWND box = form.txtLog.Window();
        POINTL first{};
        const LRESULT line = SendMessageA(box, EM_GETFIRSTVISIBLELINE, 0, 0);
        SendMessageA(box, EM_POSFROMCHAR, reinterpret_cast<WPARAM>(&first),
                     SendMessageA(box, EM_LINEINDEX, static_cast<WPARAM>(line), 0));
        RECT text{};
        SendMessageA(box, EM_GETRECT, 0, reinterpret_cast<LPARAM>(&text));
        EXPECT_EQ(first.y, text.top) << "height " << height;
    }
}

TEST(Keyboard, AMessageBoxThatWasScrolledUpStaysWhereItIs) {
    frmSample form;
    form.Show();
    const HWND box = form.txtLog.Window();
    const auto top = [&] { return SendMessageA(box, EM_GETFIRSTVISIBLELINE, 0, 0); };
    EXPECT_TRUE(form.txtLog.EndInView());
    for (int line = 0; line < 40; ++line)
        form.txtLog.Append("\r\nline " + std::to_string(line));
    EXPECT_TRUE(form.txtLog.EndInView());
    SendMessageA(box, WM_VSCROLL, SB_TOP, 0);
    EXPECT_FALSE(form.txtLog.EndInView());
    form.txtLog.Append("\r\nmore");
    EXPECT_EQ(top(), 0);
    SendMessageA(box, WM_VSCROLL, SB_BOTTOM, 0);
    const LRESULT end = top();
    const CHARRANGE chosen{3, 7};
    SendMessageA(box, EM_EXSETSEL, 0, reinterpret_cast<LPARAM>(&chosen));
    SendMessageA(box, WM_VSCROLL, SB_BOTTOM, 0);
    form.txtLog.Append("\r\nand more");
    CHARRANGE kept{};
    SendMessageA(box, EM_EXGETSEL, 0, reinterpret_cast<LPARAM>(&kept));
    EXPECT_EQ(kept.cpMin, 3);
    EXPECT_EQ(kept.cpMax, 7);
    EXPECT_EQ(top(), end);
}

TEST(Keyboard, AFormThatIsHigherThanItsScreenScrollsToWhatHasTheFocus) {
    frmSample form;
    form.Load();
    const RECT work = gui::WorkAreaAround(form.Window());
    SetWindowPos(form.Window(), nullptr, 0, 0, 400, 3000, SWP_NOZORDER);
    form.cmdPress.Move(10, 2900, 80, 25);
    gui::FitHeight(form.Window());
    form.Visible(true);
    RECT own{};
    GetWindowRect(form.Window(), &own);
    EXPECT_EQ(own.top, work.top);
    EXPECT_EQ(own.bottom, work.bottom);
    RECT seen{};
    GetClientRect(form.Window(), &seen);
    // Once round by keyboard, to the top and to the bottom.
    bool pressed = false;
    bool others = false;
    for (int press = 0; press < 20; ++press) {
        PressKey(VK_TAB);
        const HWND focus = Reached(form);
        RECT place{};
        GetWindowRect(focus, &place);
        MapWindowPoints(nullptr, form.Window(), reinterpret_cast<POINT*>(&place), 2);
        EXPECT_GE(place.top, 0) << GetDlgCtrlID(focus);
        EXPECT_LE(place.top, seen.bottom) << GetDlgCtrlID(focus);
        (focus == form.cmdPress.Window() ? pressed : others) = true;
    }
    EXPECT_TRUE(pressed && others);
    SendMessageA(form.Window(), WM_VSCROLL, SB_TOP, 0);
    EXPECT_EQ(form.cmdPress.Bounds().top, 2900);
    SendMessageA(form.Window(), WM_MOUSEWHEEL, MAKEWPARAM(0, static_cast<WORD>(-WHEEL_DELTA)), 0);
    EXPECT_LT(form.cmdPress.Bounds().top, 2900);
}

} // namespace
