// What the pages use of the property sheet around them: its state, its tabs and its Apply button.
#pragma once

#include <windows.h>

#include "settings/SheetState.h"

namespace kzp {

// The sheet of a page, asked with every message that the page gets: found with WM_INITDIALOG by the page's
// PROPSHEETPAGE, kept with the window, and given back with WM_NCDESTROY. Null before and from then on. Throws
// std::bad_alloc with WM_INITDIALOG.
SheetState* SheetOfPage(HWND page, UINT message, LPARAM lParam);

// Presses Ctrl+Tab `times` times as a user would. The sheet must have the keyboard focus; it switches when
// the presses come out of its message queue, not before this returns.
void PressCtrlTab(int times);

// Keeps the tab control of the window `frame` in SheetTabControl and presses Ctrl+Tab once for each tab:
// every page is shown and thereby created once, and the sheet ends on the tab where it started. The presses
// go to whatever window has the focus; a page that they miss is created when the user first comes to it.
void VisitAllTabs(SheetState& sheet, HWND frame);

// Enables the sheet's Apply button directly, as it is meant: the frame does not count one of our pages as
// changed, as it would with PSM_CHANGED.
void EnableApply(HWND frame);

}  // namespace kzp
