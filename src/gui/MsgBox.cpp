#include "gui/MsgBox.h"

#include "gui/Application.h"
#include "gui/BoxWindow.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace gui {

namespace {

std::vector<std::pair<std::string, std::string>>& Told() {
    static std::vector<std::pair<std::string, std::string>> told;
    return told;
}

Task<> ShowTold(std::string text, unsigned style, std::string title) {
    co_await MsgBox(text, style, title);
    std::erase(Told(), std::pair(title, text));
}

} // namespace

Task<int> MsgBox(std::string text, unsigned style, std::string title, HWND owner) {
    // A box that is in front is no owner: it would take this one with it when it is answered.
    BoxWindow box(text, style, title, owner ? owner : BoxWindow::OwnerOf(GetActiveWindow()));
    co_await box.Answered.Happened();
    co_return box.Button();
}

void Tell(const std::string& text, unsigned style, const std::string& title) {
    const std::pair box(title, text);
    if (std::ranges::find(Told(), box) != Told().end())
        return;
    Told().push_back(box);
    ToolTasks().Start(ShowTold(text, style, title));
}

} // namespace gui
