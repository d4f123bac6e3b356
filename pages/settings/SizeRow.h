// The row with width and height, which only "User Defined" needs, and the controls that make room for it.
#pragma once

#include "settings/SheetState.h"

namespace kzp {

// Takes down where each control below the row stands; once, at page initialisation.
void RememberOffsets(SheetState& sheet, HWND page);

// Shows or hides the row (`showCommand` is SW_SHOW or SW_HIDE) and puts every control below it `shift` pixels
// under its remembered place. Nothing moves for SW_HIDE with a shift of 0, when the row is hidden already.
void ShowSizeRow(SheetState& sheet, HWND page, int shift, int showCommand);

// How far the controls must move to close the gap, in pixels: negative, or 0 once it is closed.
int HiddenRowShift(HWND page);

}  // namespace kzp
