#include "frmSample.h"

#include "gui/FormSlot.h"
#include "gui/Placement.h"
#include "support/ChildProcess.h"
#include "support/Keyboard.h"
#include "support/MessageBoxes.h"
#include "support/Servers.h"
#include "support/Test.h"

#include <commctrl.h>

#include <fstream>

namespace {

using support::WaitUntil;

void Click(const gui::Control& control) {
    SendMessageA(control.Window(), BM_CLICK, 0, 0);
}

void Type(const gui::Control& control, const char* text) {
    for (; *text; ++text)
        SendMessageA(control.Window(), WM_CHAR, static_cast<WPARAM>(*text), 0);
}

TEST(Form, EventsReachTheirHandlers) {
    frmSample form;
    form.Load();
    form.events.clear();
    const std::pair<int, std::function<void()>> cases[] = {
        {IDC_frmSample_cmdPress, [&] { Click(form.cmdPress); }},
        {IDC_frmSample_chkFlag, [&] { Click(form.chkFlag); }},
        {IDC_frmSample_chkFlag, [&] { form.chkFlag.Value(1); }},
        {IDC_frmSample_optSecond, [&] { Click(form.optSecond); }},
        {IDC_frmSample_optFirst, [&] { form.optFirst.Value(true); }},
        {IDC_frmSample_txtText, [&] { form.txtText.Text("new"); }},
        {IDC_frmSample_txtText, [&] { Type(form.txtText, "a"); }},
        {IDC_frmSample_lstNames, [&] { form.lstNames.ListIndex(0); }},
        {IDC_frmSample_cboNames, [&] { form.cboNames.ListIndex(0); }},
        {IDM_frmSample_mnuInBar, [&] { SendMessageA(form.Window(), WM_COMMAND, IDM_frmSample_mnuInBar, 0); }},
        {IDC_frmSample_picMap,
         [&] { SendMessageA(form.picMap.Window(), WM_LBUTTONDOWN, 0, MAKELPARAM(3, 3)); }},
        {frmSample::kMouseDown, [&] { SendMessageA(form.Window(), WM_LBUTTONDOWN, 0, MAKELPARAM(2, 2)); }},
        {IDC_frmSample_fraBox, [&] {
             const RECT box = form.fraBox.Bounds();
             SendMessageA(form.Window(), WM_RBUTTONDOWN, 0, MAKELPARAM(box.left + 5, box.top + 9));
         }}};
    for (const auto& [event, cause] : cases) {
        form.events.clear();
        cause();
        EXPECT_EQ(form.events, std::vector<int>{event});
    }
}

TEST(Form, ControlsKeepWhatTheyAreGiven) {
    frmSample form;
    form.Load();
    form.optFirst.Value(true);
    form.optOther.Value(true);
    form.optSecond.Value(true);
    EXPECT_TRUE(!form.optFirst.Value() && form.optSecond.Value());
    EXPECT_TRUE(form.optOther.Value()) << "another group";

    Type(form.txtText, "xaxc");
    EXPECT_EQ(form.txtText.Text(), "ac") << "x is swallowed";
    for (const std::size_t length : {0, 252, 253, 254, 255, 256, 3000}) {
        const std::string text(length, 'y');
        form.txtText.Text(text);
        EXPECT_EQ(form.txtText.Text(), text) << length;
    }
    form.lstNames.AddItem("b");
    form.lstNames.AddItem("B");
    form.lstNames.ListIndex(7);
    EXPECT_EQ(form.lstNames.ListIndex(), -1);
    EXPECT_EQ(form.lstNames.IndexOf("B"), 1);
}

TEST(Form, AnErrorStopsAtTheFormAndEndsOnlyItsHandler) {
    const std::pair<std::function<void()>, long> errors[] = {
        {[] { throw RuntimeError(common::kInputPastEnd); }, common::kInputPastEnd},
        {[] { throw std::bad_alloc(); }, common::kOutOfMemory},
        {[] { static_cast<void>(std::string().at(1)); }, common::kInternalError}};
    for (const auto& [raise, number] : errors) {
        frmSample form;
        form.whenLoading = raise;
        form.Load();
        EXPECT_FALSE(form.Loaded());
        EXPECT_EQ(form.errorNumber, number);
        EXPECT_EQ(form.events, std::vector<int>{frmSample::kLoad}) << "no Unload";
        form.whenLoading = [] {};
        form.Load();

        NMHDR header{form.stcPlug.Window(), IDC_frmSample_stcPlug, 1};
        const auto notify = [&] {
            SendMessageA(form.Window(), WM_NOTIFY, header.idFrom, reinterpret_cast<LPARAM>(&header));
        };
        form.whenPressed = form.whenCalled = raise;
        for (const std::function<void()>& cause :
             {std::function<void()>([&] { Click(form.cmdPress); }), std::function<void()>(notify)}) {
            form.errorNumber = 0;
            cause();
            EXPECT_EQ(form.errorNumber, number);
        }
        form.whenPressed = [] {};
        Click(form.cmdPress);
        EXPECT_EQ(form.Count(IDC_frmSample_cmdPress), 2);
    }
}

TEST(Form, AnErrorOfDrawingIsToldOnceUntilTheControlCouldBeDrawn) {
    frmSample form;
    form.Show();
    const auto draw = [&] {
        RedrawWindow(form.stcPlug.Window(), nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
        return form.errors;
    };
    EXPECT_EQ(draw(), 0);
    form.whenCalled = [] { throw RuntimeError(common::kOverflow); };
    EXPECT_EQ(draw(), 1);
    EXPECT_EQ(draw(), 1);
    form.whenCalled = [] {};
    EXPECT_EQ(draw(), 1);
    form.whenCalled = [] { throw std::bad_alloc(); };
    EXPECT_EQ(draw(), 2);
}

TEST(Form, AHalfLoadedFormIsNeitherShownNorSaved) {
    frmSample form;
    form.whenLoading = [&] {
        form.Show();
        EXPECT_FALSE(form.Visible());
    };
    form.Show();
    EXPECT_TRUE(form.Visible());
    form.Unload();

    form.events.clear();
    form.whenLoading = [&] {
        form.Unload();
        EXPECT_FALSE(form.Loaded());
    };
    form.Show();
    EXPECT_FALSE(form.Loaded());
    EXPECT_EQ(form.Count(frmSample::kUnload), 0);
}

TEST(Form, ATimerNeverRunsInsideItselfWhileOthersGoOn) {
    frmSample form;
    form.Load();
    int depth = 0;
    int deepest = 0;
    form.whenTicking = [&] {
        deepest = std::max(deepest, ++depth);
        WaitUntil([&] { return form.Count(frmSample::kOther) >= 3; });
        --depth;
    };
    form.tmrTick.Enabled(true);
    form.tmrOther.Enabled(true);
    EXPECT_TRUE(WaitUntil([&] { return form.Count(frmSample::kTick) >= 2 && depth == 0; }));
    EXPECT_EQ(deepest, 1);

    form.tmrTick.Interval(std::chrono::milliseconds(0));
    form.events.clear();
    EXPECT_TRUE(WaitUntil([&] { return form.Count(frmSample::kOther) >= 5; }));
    EXPECT_EQ(form.Count(frmSample::kTick), 0) << "an interval of 0 never fires";
}

TEST(Form, AClosedFormIsReleasedOnlyAfterItsHandlerHasReturned) {
    gui::FormSlot<frmSample> slot;
    frmSample& form = slot.Get();
    form.Load();
    const auto life = std::make_shared<int>();
    bool aliveInside = false;
    form.whenPressed = [&, life] {
        form.Unload();
        EXPECT_TRUE(!form.Loaded() && !slot.Peek());
        support::DispatchPending();
        aliveInside = life.use_count() == 2;
        EXPECT_EQ(form.txtText.Text(), "") << "a control without a window reads empty";
    };
    Click(form.cmdPress);
    EXPECT_TRUE(aliveInside);
    EXPECT_TRUE(WaitUntil([&] {
        PostThreadMessageA(GetCurrentThreadId(), WM_NULL, 0, 0);
        return life.use_count() == 1;
    }));
}

TEST(Form, AModalFormDisablesItsOwnerUntilItIsUnloaded) {
    frmSample owner;
    owner.Show();
    frmSample modal;
    bool disabled = false;
    modal.whenTicking = [&] {
        disabled = !IsWindowEnabled(owner.Window());
        modal.Unload();
    };
    modal.tmrTick.Enabled(true);
    support::Run(modal.ShowModal(owner));
    EXPECT_TRUE(disabled);
    EXPECT_TRUE(IsWindowEnabled(owner.Window()));
    EXPECT_EQ(modal.Count(frmSample::kUnload), 1);
}

gui::Task<> WaitForModal(frmSample& modal, frmSample& owner, std::ofstream& log) {
    const std::shared_ptr<void> ended(nullptr, [&log](void*) { log << "wait ended\n"; });
    co_await modal.ShowModal(owner);
    log << "task went on\n";
}

/// Leaves the tool from a timer while a task waits for a modal form, and writes down what ended.
const support::ChildEntry leaveInTheMiddle("LeaveInTheMiddle", [](const std::string& folder) {
    frmSample owner;
    frmSample modal;
    std::ofstream log(folder + "\\log.txt");
    owner.whenPressed = [&] {
        owner.tmrTick.Enabled(true);
        gui::ToolTasks().Start(WaitForModal(modal, owner, log));
    };
    owner.whenTicking = [] { gui::End(5); };
    owner.Show();
    PostMessageA(owner.cmdPress.Window(), BM_CLICK, 0, 0);
    const int code = gui::Run();
    log << "run returned " << code << "\n";
});

TEST(Form, LeavingEndsTheLoopAndEveryTask) {
    const support::TempFolder folder;
    const support::ChildProcess child("LeaveInTheMiddle", folder.Path());
    EXPECT_TRUE(WaitUntil([&] { return !child.Running(); }));
    EXPECT_EQ(common::ReadFileText(folder / "log.txt"), "wait ended\r\nrun returned 5\r\n");
}

TEST(Form, ANewWindowLiesOverItsOwnerOnTheOwnersMonitor) {
    const RECT primary{0, 0, 1920, 1040};
    const RECT leftOf{-1280, 100, 0, 1084};
    const SIZE size{400, 300};
    const struct {
        const char* what;
        RECT over, work;
        POINT expected;
    } cases[] = {
        {"in the middle of the owner", {100, 100, 900, 700}, primary, {300, 250}},
        {"in the middle of the screen", primary, primary, {760, 370}},
        {"on the second monitor", {-1000, 200, -400, 500}, leftOf, {-900, 200}},
        {"pushed in at the edges", {-1300, 900, -1200, 1084}, leftOf, {-1280, 784}},
        {"an owner half on the other monitor", {-100, 200, 100, 400}, leftOf, {-400, 150}},
        {"larger than the monitor", primary, {0, 0, 300, 200}, {0, 0}},
    };
    for (const auto& [what, over, work, expected] : cases) {
        const POINT at = gui::PlaceOver(size, over, work);
        EXPECT_EQ(at.x, expected.x) << what;
        EXPECT_EQ(at.y, expected.y) << what;
    }

    frmSample owner;
    frmSample opened;
    owner.Show();
    SetWindowPos(owner.Window(), nullptr, 5, 5, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
    owner.State(gui::WindowState::Minimized);
    opened.Show(&owner);
    RECT place;
    GetWindowRect(opened.Window(), &place);
    EXPECT_GT(place.left, 100) << "a minimized owner's own corner is no place for it";
}

void ExpectATipOver(bool enabled) {
    SCOPED_TRACE(enabled);
    frmSample form;
    form.Show();
    form.optOther.Enabled(enabled);
    RECT place;
    GetWindowRect(form.optOther.Window(), &place);
    const POINT middle{(place.left + place.right) / 2, (place.top + place.bottom) / 2};
    // Where the mouse moves over a disabled control, the form behind it gets the message.
    const auto moveTo = [&](POINT at) {
        SetCursorPos(at.x, at.y);
        const bool overControl = form.optOther.Enabled() && PtInRect(&place, at);
        const HWND window = overControl ? form.optOther.Window() : form.Window();
        ScreenToClient(window, &at);
        PostMessageA(window, WM_MOUSEMOVE, 0, MAKELPARAM(at.x, at.y));
    };
    const auto tip = [&]() -> HWND {
        for (HWND tips = nullptr; (tips = FindWindowExA(nullptr, tips, TOOLTIPS_CLASSA, nullptr));)
            if (GetWindow(tips, GW_OWNER) == form.Window() && IsWindowVisible(tips))
                return tips;
        return nullptr;
    };
    // The news of where the mouse was before may still be on its way, and end the first try.
    const auto shows = [&](POINT at, int tries) {
        for (; tries > 0; --tries) {
            moveTo(at);
            if (WaitUntil([&] { return tip() != nullptr; }, std::chrono::seconds(2)))
                return true;
        }
        return false;
    };
    ASSERT_TRUE(shows(middle, 10));
    EXPECT_EQ(support::TextOf(tip()), "Another choice");
    moveTo({place.right + 40, place.bottom + 40});
    EXPECT_TRUE(WaitUntil([&] { return tip() == nullptr; }));
    form.optOther.Visible(false);
    EXPECT_FALSE(shows(middle, 1));
}

TEST(Form, ATipShowsOverAControlEvenWhenItIsDisabledButNotOverAHiddenOne) {
    for (const bool enabled : {false, true})
        ExpectATipOver(enabled);
}

TEST(Form, F1AsksForTheGuideOfTheForm) {
    support::MessageBoxes boxes;
    frmSample form;
    form.Show();
    PostMessageA(form.txtText.Window(), WM_KEYDOWN, VK_F1, 0);
    ASSERT_TRUE(WaitUntil([&] { return boxes.Seen().size() == 1; }));
    EXPECT_NE(boxes.Texts()[0].find("docs\\help\\the-sample.html"), std::string::npos) << boxes.Texts()[0];
}

TEST(Form, APictureShowsAGif) {
    // 2 x 2 pixels: red, green over blue, white.
    static const unsigned char gif[] = {'G', 'I', 'F', '8', '9', 'a', 2, 0,   2,   0,    0x91, 0,    0, 255,
                                        0,   0,   0,   255, 0,   0,   0, 255, 255, 255,  255,  0x2C, 0, 0,
                                        0,   0,   2,   0,   2,   0,   0, 2,   3,   0x44, 0x34, 0x05, 0, 0x3B};
    const support::TempFolder folder;
    support::WriteFile(folder / "map.gif", std::string(reinterpret_cast<const char*>(gif), sizeof gif));
    frmSample form;
    form.Show();
    form.picMap.Load(folder / "map.gif");
    EXPECT_FALSE(form.picMap.Empty());
    form.shpMark.Visible(false);
    const RECT bounds = form.picMap.Bounds();
    const auto pixel = [&](int quarterX, int quarterY) {
        RedrawWindow(form.picMap.Window(), nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
        const HDC context = GetDC(form.picMap.Window());
        const COLORREF colour = GetPixel(context, (bounds.right - bounds.left) * quarterX / 4,
                                         (bounds.bottom - bounds.top) * quarterY / 4);
        ReleaseDC(form.picMap.Window(), context);
        return colour;
    };
    EXPECT_EQ(pixel(1, 1), RGB(255, 0, 0));
    EXPECT_EQ(pixel(3, 1), RGB(0, 255, 0));
    EXPECT_EQ(pixel(1, 3), RGB(0, 0, 255));

    // A ring around the picture's corner is seen on the picture and outside; a click goes through it.
    form.shpMark.Visible(true);
    form.shpMark.Move(bounds.left - form.shpMark.Width() / 2, bounds.top - form.shpMark.Height() / 2);
    RedrawWindow(form.Window(), nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
    RECT ring;
    GetWindowRect(form.shpMark.Window(), &ring);
    const long middle = (ring.top + ring.bottom) / 2;
    const HDC screen = GetDC(nullptr);
    // What a window has drawn reaches the screen a moment later.
    for (const long x : {ring.left + 2, ring.right - 3})
        EXPECT_TRUE(support::WaitUntil([&] { return GetRValue(GetPixel(screen, x, middle)) == 220; }))
            << x - ring.left;
    EXPECT_EQ(GetPixel(screen, ring.right - 9, middle + 5), RGB(255, 0, 0));
    ReleaseDC(nullptr, screen);
    EXPECT_EQ(WindowFromPoint({ring.right - 3, middle + 1}), form.picMap.Window());
    EXPECT_THROW(form.picMap.Load(folder / "missing.gif"), RuntimeError);
}

} // namespace
