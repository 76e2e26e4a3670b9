#include "gui/Anchors.h"

#include <cmath>

namespace gui {

SIZE Anchors::ClientSize() const {
    RECT area{};
    GetClientRect(form_.Window(), &area);
    return {area.right, area.bottom};
}

void Anchors::Add(Control& control, const Edges& edges) {
    if (controls_.empty())
        start_ = ClientSize();
    controls_.push_back({&control, edges, control.Bounds()});
}

void Anchors::Apply() {
    if (controls_.empty() || form_.State() == WindowState::Minimized)
        return;
    const SIZE size = ClientSize();
    const auto across = [&](double share) { return std::lround(share * (size.cx - start_.cx)); };
    const auto down = [&](double share) { return std::lround(share * (size.cy - start_.cy)); };
    // All at once: moved one by one they would overlap for a moment and leave traces.
    HDWP moves = BeginDeferWindowPos(static_cast<int>(controls_.size()));
    for (const auto& [control, edges, start] : controls_) {
        const long left = start.left + across(edges.left);
        const long top = start.top + down(edges.top);
        moves = DeferWindowPos(moves, control->Window(), nullptr, left, top,
                               start.right + across(edges.right) - left,
                               start.bottom + down(edges.bottom) - top, SWP_NOZORDER | SWP_NOACTIVATE);
    }
    EndDeferWindowPos(moves);
    // Frames and labels do not draw what lies between their lines.
    RedrawWindow(form_.Window(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

} // namespace gui
