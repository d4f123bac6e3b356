// The page's six number edits: what happens on every keystroke, on a click of their spin buttons and when the
// unit changes.
#pragma once

#include "pages/settings/Measures.h"

namespace kzp {

// Called on every change of an edit. Cleans and limits its text and takes text and value into the state.
// Writing a cleaned text back raises the next change, so the edit ends clean. Answers 1; other controls are
// ignored.
int FilterNumericEdit(PageMeasureState& measures, HWND page, int controlId);

// One step of 0.05 in the current unit. An edit that holds no such number becomes `minimum`.
void StepUp(HWND page, int controlId, unsigned minimum);
void StepDown(HWND page, int controlId, unsigned minimum);

// The edit that a spin button belongs to, or 0.
int EditOfSpinButton(UINT_PTR spinId);

// Reads the six edits, converts from the unit still recorded to `newUnit` and writes them back with two
// decimals; with the same unit this only tidies. An edit that was never filled, for a margin of the record,
// is left empty. The caller records the new unit afterwards.
void ConvertUnits(PageMeasureState& measures, HWND page, DWORD newUnit);

}  // namespace kzp
