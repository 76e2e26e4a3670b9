#pragma once

#include "gui/Modality.h"
#include "gui/TaskWaits.h"

#include <windows.h>

#include <optional>
#include <string>

namespace gui {

/// A message box as the system shows it, with the same window class, ids and keys, but without a message loop
/// of its own: the system's box would hold up whatever lies below it on the stack until it is answered.
class BoxWindow {
public:
    /// Shows it, above `owner`, which takes no input meanwhile. `style` takes the platform's MB_ values.
    BoxWindow(const std::string& text, unsigned style, const std::string& title, HWND owner);
    ~BoxWindow();
    BoxWindow(const BoxWindow&) = delete;
    BoxWindow& operator=(const BoxWindow&) = delete;

    /// Happens when a button was pressed or the window has gone.
    Event Answered;
    /// The id of the button; 0 when the window went without one, as it does with its owner.
    int Button() const { return button_; }

    /// The window itself, or the owner of a box.
    static HWND OwnerOf(HWND window);

    /// Keyboard handling of the box that the message belongs to; true when the message is used up.
    static bool TranslateKey(MSG& message);

private:
    static INT_PTR CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    void Answer(int id);
    void Close();
    void PaintBackground(HDC surface) const;
    void CopyText() const;

    HWND window_ = nullptr;
    HWND owner_;
    HFONT font_ = nullptr;
    int footer_ = 0; ///< top of the strip with the buttons, in pixels
    int button_ = 0;
    std::optional<Disabled> disabled_;
};

} // namespace gui
