// The page's paper: the custom form from its creation to its rewriting, the paper list, and what the page
// shows of the paper that is selected.
#pragma once

#include <windows.h>

namespace kzp {

// Creates the form "User Defined", 8.5 by 10.5 inches, for the current printer when it cannot be read.
// Answers 1 whatever came of it.
int EnsureCustomForm();

// Rewrites the form "User Defined" with the size that was typed, when it is the selected paper and differs
// from what is stored. Answers nonzero when the form was rewritten.
int CommitCustomForm();

// One entry for each option of the feature "PaperSize", in the driver's order, so that positions agree. The
// custom paper is shown by the resource module's name for it. Throws std::bad_alloc when the list cannot
// grow.
void FillPaperList(HWND page);

// Checks a unit button: the driver's "CustomUnit" when it is asked for and found, millimetres otherwise. With
// `fill`, also writes the size of the form "User Defined" and the private record's margins into the edits, in
// units of `factor` millimetres (25.4 for inches, 1 for millimetres).
void ShowCustomForm(HWND page, double factor, bool takeUnitFromDriver, bool fill);

// Takes the size of the form that the paper list shows as selected into the state, in units of `factor`
// millimetres; the page passes 25.4. A form that cannot be read has no known size.
void ReadStandardFormSize(HWND page, double factor);

// What selecting a paper does to the page: shows the size row for "User Defined"; otherwise hides it, and all
// that is below moves up.
void SelectPaper(HWND page);

}  // namespace kzp
