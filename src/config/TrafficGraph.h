#pragma once

#include "config/TrafficMeter.h"
#include "gui/Control.h"

#include <deque>

namespace config {

/// Draws the speeds of the last two minutes, the newest at the right edge, and a frame while it has the
/// keyboard. The template gives it
/// SS_OWNERDRAW.
class TrafficGraph : public gui::Control {
public:
    using Control::Control;

    /// The next second's speeds, in kilobytes.
    void Add(const Traffic& speed);

private:
    void Attached() override { Watch(Window()); }
    bool Message(HWND window, UINT message, WPARAM& wParam, LPARAM lParam) override;
    void Draw(const DRAWITEMSTRUCT& item) override;

    std::deque<Traffic> speeds_;
};

/// The speed at the graph's upper edge, for a highest speed drawn: a round number that is not below it.
double GraphScale(double highest);

} // namespace config
