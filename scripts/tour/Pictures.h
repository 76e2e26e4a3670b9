#pragma once

#include <windows.h>

#include <set>
#include <string>

// Pictures of what is on the screen.

/// Pictures are put into the folder from then on.
void BeginPictures(const std::string& folder);
void EndPictures();

RECT BoundsOf(const std::set<HWND>& windows);
/// Returns once the area has stopped changing, or after ten seconds.
void AwaitSettled(const RECT& area);
/// A picture of the area, once it has stopped changing.
void Save(const std::string& name, RECT area);
/// A picture of the window; of a window with tabs, one of each page, or of the one page, counted from 0.
void TakePictures(const std::string& name, HWND window, int page = -1);
