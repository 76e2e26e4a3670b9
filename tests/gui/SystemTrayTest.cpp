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

} // namespace
