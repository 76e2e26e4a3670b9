#pragma once

#include <windows.h>

#include <functional>
#include <set>
#include <string>

// Windows as a user finds and uses them.

/// What is done in a window.
using Act = std::function<void(HWND)>;

std::string TextOf(HWND window);
bool IsOfClass(HWND window, const std::string& wanted);

/// The control with this id, on whichever page of the window it is; null when there is none.
HWND ControlOf(HWND window, int id);
bool HasText(HWND window, int id);
/// Puts a text into the control with this id.
void Type(HWND window, int id, const char* text);

/// Presses the button with this id or chooses the menu entry.
Act Press(int id);
/// Clicks on the control with this id.
Act ClickOn(int id);
void PostKeys(HWND window, int key, int times);
/// Opens a menu of the menu bar, counted from 0.
Act MenuBar(int index);
/// Opens the tray icon's menu, as the task bar reports a right press on the icon, and in it the submenu that
/// `downs` presses of the down key lead to (0 for none).
Act TrayMenu(int downs);

/// Whose windows ToolWindows lists.
void ToolProcess(DWORD process);
/// The visible windows of kTools, opened menus included. Tooltips come and go by themselves.
std::set<HWND> ToolWindows();
/// Waits, and reports what has not come true for the window.
void Expect(HWND window, const std::string& what, const std::function<bool()>& condition);
/// Waits for the box whose text begins so, and presses its button.
void AnswerBox(const std::string& start, int button);
