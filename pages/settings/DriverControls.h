// The page's controls that stand for features of the core driver.
#pragma once

#include <windows.h>

namespace kzp {

// Writes one control's choice into the driver's option item and announces it, or, for the two check boxes,
// into the pending settings. Nothing happens for a feature that the driver lacks, for a list without a
// selection, and for other controls.
void ApplyControlToDriver(HWND page, int controlId);

// Fills the quality and colour lists and shows what the driver has selected. A feature that it lacks leaves
// its control as the template made it.
void ShowDriverSelections(HWND page);

// Whether the driver has the feature "CustomUnit".
bool HasDriverUnit();

// Records the unit in the driver; false, and nothing is recorded, when it has no feature "CustomUnit".
bool SelectDriverUnit(DWORD unit);

}  // namespace kzp
