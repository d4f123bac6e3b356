// The fonts dialog's place in the sheet: inside the driver's own page, over the driver's controls.
#pragma once

#include "settings/SheetState.h"

namespace kzp {

// Hides every control of `driverPage` and puts the fonts and colour dialog there, visible; on Windows 6.0 in
// the browser's restricted process a notice instead. Called once per sheet, when the page is first activated.
void EmbedSettingsDialog(SheetState& sheet, HWND driverPage);

}  // namespace kzp
