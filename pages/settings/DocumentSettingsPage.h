// The "KZP Settings" page: paper, units, margins, quality, colour, output type.
#pragma once

#include "settings/SheetState.h"

namespace kzp {

// Dialog procedure of IDD_DOCUMENT_SETTINGS.
INT_PTR CALLBACK DocumentSettingsPageProc(HWND page, UINT message, WPARAM wParam, LPARAM lParam);

// Takes the driver's unit and the record's margins over before the page is set up. What is not shown to the
// user afterwards stays in the record as it is.
void TakeStoredSizes(SheetState& sheet);

}  // namespace kzp
