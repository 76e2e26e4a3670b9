#include "gui/Modality.h"

#include <unordered_map>

namespace gui {

namespace {

std::unordered_map<HWND, int>& Counts() {
    static std::unordered_map<HWND, int> counts;
    return counts;
}

} // namespace

Disabled::Disabled(HWND window) : window_(window) {
    if (window_ && ++Counts()[window_] == 1)
        EnableWindow(window_, FALSE);
}

Disabled::~Disabled() {
    if (!window_ || --Counts()[window_] > 0)
        return;
    Counts().erase(window_);
    EnableWindow(window_, TRUE);
}

} // namespace gui
