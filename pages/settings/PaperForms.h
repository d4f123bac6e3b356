// The page's paper: the custom form from its creation to its rewriting, the paper list, and what the page
// shows of the paper that is selected.
#pragma once

#include "settings/SheetState.h"

namespace kzp {

// Creates the form "User Defined", 8.5 by 10.5 inches, for the sheet's printer when it cannot be read.
// Answers 1 whatever came of it.
int EnsureCustomForm(const SheetState& sheet);

// Rewrites the form "User Defined" of the block's printer with the size that was typed, when it is the paper
// that the block's items select and differs from what is stored. Answers nonzero when the form was rewritten.
int CommitCustomForm(const PageMeasureState& measures, const OEMCUIPPARAM& param);

// One entry for each option of the feature "PaperSize", in the driver's order, so that positions agree. The
// custom paper is shown by the resource module's name for it. Throws std::bad_alloc when the list cannot
// grow.
void FillPaperList(const SheetState& sheet, HWND page);

// Checks a unit button: while the recorded unit is inches, that of the driver's "CustomUnit" when it is
// found; millimetres otherwise. With `fill`, also writes the size of the form "User Defined" and the private
// record's margins into the edits, in the recorded unit.
void ShowCustomForm(const SheetState& sheet, HWND page, bool fill);

// Takes the size of the form that the paper list shows as selected into the state, always in inches. A form
// that cannot be read has no known size.
void ReadStandardFormSize(SheetState& sheet, HWND page);

// What selecting a paper does to the page: shows the size row for "User Defined"; otherwise hides it, and all
// that is below moves up.
void SelectPaper(SheetState& sheet, HWND page);

}  // namespace kzp
