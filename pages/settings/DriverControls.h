// The page's controls that stand for features of the core driver.
#pragma once

#include "settings/SheetState.h"

namespace kzp {

// Writes one control's choice into the driver's option item and announces it, or, for the two check boxes,
// into the pending settings. Nothing happens for a feature that the driver lacks, for a list without a
// selection, and for other controls.
void ApplyControlToDriver(SheetState& sheet, HWND page, int controlId);

// Fills the quality and colour lists and shows what the driver has selected. A feature that it lacks leaves
// its control as the template made it.
void ShowDriverSelections(SheetState& sheet, HWND page);

// Takes the unit that the driver's feature "CustomUnit" selects into the state; false, and the unit stays,
// when the driver lacks it.
bool TakeDriverUnit(SheetState& sheet);

// Records the unit in the driver; false, and nothing is recorded, when it has no feature "CustomUnit".
bool SelectDriverUnit(const SheetState& sheet, DWORD unit);

}  // namespace kzp
