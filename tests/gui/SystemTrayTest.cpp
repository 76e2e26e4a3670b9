#include "gui/modSystemTray.h"

#include "frmSample.h"
#include "support/Test.h"

namespace {

TEST(SystemTray, TheTipIsTheTextAndAZeroCutOrFilledUpWithBlanks) {
    frmSample form;
    form.Load();
    const std::string long63(63, 'x');
    const std::pair<std::string, std::string> cases[] = {
        {"Kerno", std::string("Kerno") + '\0' + std::string(58, ' ')},
        {long63, long63 + '\0'},
        {long63 + "yz", long63 + "y"}};
    for (const auto& [tip, field] : cases) {
        const NOTIFYICONDATAA record = modSystemTray::TrayRecord(form, tip);
        EXPECT_EQ(std::string(record.szTip, 64), field);
        EXPECT_EQ(record.cbSize, sizeof(void*) == 8 ? 104u : 88u);
        EXPECT_EQ(record.hWnd, form.Window());
        EXPECT_EQ(record.uCallbackMessage, 513u);
    }
}

TEST(SystemTray, ARealPressAtTheCoordinatesOfATrayEventIsNone) {
    frmSample form;
    form.Show();
    SetWindowPos(form.Window(), nullptr, 100, 100, 900, 300, SWP_NOZORDER);
    POINT place{modSystemTray::kTrayDoubleClick, 0};
    ClientToScreen(form.Window(), &place);
    const auto eventWithMouseAt = [&](int x, int y) {
        // The news of where the mouse was before may still be on its way.
        EXPECT_TRUE(support::WaitUntil([&] {
            SetCursorPos(x, y);
            PostMessageA(form.Window(), WM_USER, 0, 0);
            MSG message;
            GetMessageA(&message, form.Window(), WM_USER, WM_USER);
            return GetMessagePos() == static_cast<DWORD>(MAKELONG(x, y));
        }));
        return modSystemTray::EventOf(form, modSystemTray::kTrayDoubleClick, 0);
    };
    EXPECT_EQ(eventWithMouseAt(place.x, place.y), 0);
    EXPECT_EQ(eventWithMouseAt(20, 700), modSystemTray::kTrayDoubleClick);
    EXPECT_EQ(modSystemTray::EventOf(form, modSystemTray::kTrayDoubleClick, 7), 0) << "never so far down";
    form.Visible(false);
    EXPECT_EQ(eventWithMouseAt(place.x, place.y), modSystemTray::kTrayDoubleClick);
}

} // namespace
