#include "support/MessageBoxes.h"

#include "gui/MsgBox.h"

#include <gtest/gtest.h>

namespace {

TEST(MessageBoxes, SeesAndAnswersEachKindOfBox) {
    const struct {
        unsigned style;
        int answer;
    } cases[] = {{MB_OK, IDOK},
                 {MB_OK | MB_ICONERROR, IDOK},
                 {MB_YESNO | MB_ICONQUESTION, IDYES},
                 {MB_YESNO, IDNO},
                 {MB_OKCANCEL | MB_ICONEXCLAMATION, IDCANCEL},
                 {MB_YESNOCANCEL | MB_ICONINFORMATION, IDCANCEL},
                 {MB_RETRYCANCEL, IDRETRY}};
    for (const auto& c : cases) {
        support::MessageBoxes boxes;
        bool inside = false;
        boxes.Answer(c.answer, [&] { inside = true; });
        EXPECT_EQ(gui::MsgBox("What now ?", c.style, "Title"), c.answer);
        EXPECT_EQ(boxes.Seen(), (std::vector<support::SeenBox>{{"Title", "What now ?", c.style}}));
        EXPECT_TRUE(inside);
    }
}

} // namespace
