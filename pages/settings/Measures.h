// The settings page's numbers: unit, paper and margins as typed, and whether they go together.
//
// The page keeps them up to date while the user types; the commit asks whether they are valid and takes them
// over. Nothing here touches a window or knows of sheets.
#pragma once

#include "core/KZPPrivateDevMode.h"
#include "pages/settings/NumberText.h"

namespace kzp {

// Order of the margins everywhere: in the state, in the private record and in printer data.
enum Margin { kLeft, kTop, kRight, kBottom, kMargins };

// One for each sheet. Lengths are in the current unit unless stated otherwise.
struct PageMeasureState {
    DWORD unit = kInches;             // kInches or kMillimeters, as the driver's "CustomUnit"
    bool CustomSizeSelected = false;  // the paper is "User Defined"
    float typedMargin[kMargins] = {};
    float checkedMargin[kMargins] = {};  // what the margin test looks at; set together with typedMargin
    bool recordMargin[kMargins] = {};    // taken from the record and never shown: the record keeps its own
    float formWidthIn = 0;               // selected standard form, always in inches; 0 while its size
    float formHeightIn = 0;              // is not known
    float customWidth = 0;
    float customHeight = 0;
    DWORD orientation = 1;  // 1 portrait, 0 landscape
    NumberText widthText = {};
    NumberText heightText = {};
    NumberText marginText[kMargins] = {};
    LONG lastSpinDirection = 0;  // -1 after an "up" click, 1 after a "down" click
};

// True when the margins of `checkedMargin`, rounded to hundredths, leave something of the paper, alone and in
// pairs (more than 0.001). The paper's size is in the current unit and not rounded.
bool MarginsFit(const PageMeasureState& measures, double paperW, double paperH);

// While "User Defined" is selected: width and height within 1 to 100 inches (25.4 to 2540 millimetres), and
// the margins fit in the chosen orientation. True when valid.
bool CustomSizeValid(const PageMeasureState& measures);

// While a standard form is selected: the margins fit. In millimetres the form counts in whole millimetres. A
// form whose size is not known restricts nothing, for the user could not mend it. True when valid.
bool StandardFormValid(const PageMeasureState& measures);

// The test that belongs to the selected paper.
bool SizesValid(const PageMeasureState& measures);

// Copies the margins out of a private record, in millimetres; false without a record.
bool ReadRecordMargins(const KZPPrivateDevMode* record, float (&millimeters)[kMargins]);

// Takes the record's margins over into the state in the current unit. The test sees them as if they had been
// typed, but as long as no edit shows one, the commit leaves it as the record has it.
void TakeRecordMargins(PageMeasureState& measures, const KZPPrivateDevMode* record);

// Writes the four margin texts into the private record, when there is one, in millimetres, and answers 1.
// With inches `typedMargin` holds millimetres afterwards as well, which is deliberate; the texts stay as they
// are.
int CommitMargins(PageMeasureState& measures, KZPPrivateDevMode* record);

}  // namespace kzp
