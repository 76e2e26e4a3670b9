#include "gui/MsgBox.h"

#include "gui/Application.h"

namespace gui {

int MsgBox(const std::string& text, unsigned style, const std::string& title, HWND owner) {
    const int button = MessageBoxA(owner ? owner : GetActiveWindow(), text.c_str(), title.c_str(), style);
    if (Ending())
        throw Leaving{};
    return button;
}

} // namespace gui
