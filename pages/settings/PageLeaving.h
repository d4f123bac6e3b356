// Sizes and margins that do not go together are reported when the page is left, and the sheet comes back to
// the page.
#pragma once

#include "settings/SheetState.h"

namespace kzp {

// PSN_KILLACTIVE. False when the sizes are invalid, which has then been said. The change of tabs is not
// vetoed: the page comes back when it is hidden.
bool LeavePage(SheetState& sheet);

// The page is shown or hidden: comes back to the front without a word when the sizes are invalid.
void CheckWhenShownOrHidden(const SheetState& sheet);

}  // namespace kzp
