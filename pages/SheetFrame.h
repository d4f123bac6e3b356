// What the pages use of the property sheet around them: its tabs and its Apply button.
#pragma once

#include <windows.h>

namespace kzp {

// Presses Ctrl+Tab `times` times as a user would. The sheet must have the keyboard focus; it switches when
// the presses come out of its message queue, not before this returns.
void PressCtrlTab(int times);

// Keeps the sheet's tab control in g_sheet.SheetTabControl and presses Ctrl+Tab once for each tab: every page
// is shown and thereby created once, and the sheet ends on the tab where it started.
void VisitAllTabs(HWND sheet);

// Enables the sheet's Apply button directly. (PSM_CHANGED would also mark a page, and the driver asks no
// page.)
void EnableApply(HWND sheet);

}  // namespace kzp
