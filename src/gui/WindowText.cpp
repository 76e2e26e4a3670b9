#include "gui/WindowText.h"

namespace gui {

std::string TextOf(HWND window) {
    // The system may then leave the buffer as it was.
    if (!window)
        return {};
    // One question is enough for most texts, and a window takes its time for each. A text that fills the room
    // may have been cut, and a last letter of two bytes with it.
    char few[256];
    const int length = GetWindowTextA(window, few, sizeof few);
    if (length < static_cast<int>(sizeof few) - 2)
        return {few, static_cast<std::size_t>(length)};
    std::string text(static_cast<std::size_t>(GetWindowTextLengthA(window)) + 1, '\0');
    text.resize(static_cast<std::size_t>(GetWindowTextA(window, text.data(), static_cast<int>(text.size()))));
    return text;
}

} // namespace gui
