#pragma once

#include <windows.h>

#include <set>
#include <string>

// Pictures of what is on the screen.

/// Where they are put. Takes pictures from then on, up to its end.
class Pictures {
public:
    explicit Pictures(const std::string& folder);
    ~Pictures();
    Pictures(const Pictures&) = delete;
    Pictures& operator=(const Pictures&) = delete;

private:
    ULONG_PTR token_ = 0;
};

RECT BoundsOf(const std::set<HWND>& windows);
/// Returns once the area has stopped changing, or after ten seconds.
void AwaitSettled(const RECT& area);
/// A picture of the area, once it has stopped changing.
void Save(const std::string& name, RECT area);
/// A picture of the window; of a window with tabs, one of each page, or of the one page, counted from 0.
void TakePictures(const std::string& name, HWND window, int page = -1);
