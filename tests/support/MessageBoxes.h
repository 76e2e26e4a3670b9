#pragma once

#include <windows.h>

#include <deque>
#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

namespace support {

/// A message box as the user saw it. `style` has its buttons and its icon in the platform's MB_ values.
struct SeenBox {
    std::string title;
    std::string text;
    unsigned style = MB_OK;

    bool operator==(const SeenBox&) const = default;
};
std::ostream& operator<<(std::ostream& out, const SeenBox& box);

/// Answers the real message boxes that this thread shows while the object lives, and keeps what they said.
/// A box with nothing but OK needs no answer of its own. A question that none was given for is declined and
/// fails the test, and so does an answer that is left over at the end.
class MessageBoxes {
public:
    MessageBoxes();
    ~MessageBoxes();
    MessageBoxes(const MessageBoxes&) = delete;

    /// The button (IDYES and so on) for the next box that has none yet. `meanwhile` runs while that box is
    /// open; where it makes the box vanish, nothing is pressed.
    MessageBoxes& Answer(int button, std::function<void()> meanwhile = {});

    /// The boxes so far, in the order in which they came up.
    const std::vector<SeenBox>& Seen() const { return seen_; }
    std::vector<std::string> Texts() const;
    void Clear() { seen_.clear(); }

private:
    struct Reply {
        int button;
        std::function<void()> meanwhile;
    };

    static LRESULT CALLBACK Hook(int code, WPARAM wParam, LPARAM lParam);
    static void CALLBACK Shown(HWND box, UINT message, UINT_PTR timer, DWORD time);
    void Activated(HWND window);
    void Press(HWND box);

    HHOOK hook_ = nullptr;
    MessageBoxes* outer_ = nullptr;
    std::deque<Reply> replies_;
    std::vector<SeenBox> seen_;
};

} // namespace support
