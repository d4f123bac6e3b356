// The settings page's numbers: unit, paper and margins as typed, and whether they go together.
//
// The page keeps them up to date while the user types; the commit asks whether they are valid and takes them
// over. Nothing here touches a window.
#pragma once

#include "pages/settings/NumberText.h"

namespace kzp {

// Order of the margins everywhere: in the state, in the private record and in printer data.
enum Margin { kLeft, kTop, kRight, kBottom, kMargins };

// One instance for the process, for only one sheet is open at a time. Lengths are in the current unit unless
// stated otherwise.
struct PageMeasureState {
    DWORD unit = kInches;             // kInches or kMillimeters, as the driver's "CustomUnit"
    bool CustomSizeSelected = false;  // the paper is "User Defined"
    float typedMargin[kMargins] = {};
    float checkedMargin[kMargins] = {};  // what the margin test looks at; set together with typedMargin
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

extern PageMeasureState g_measures;

// True when the margins of `checkedMargin`, rounded to hundredths, leave something of the paper, alone and in
// pairs (more than 0.001). The paper's size is in the current unit and not rounded.
bool MarginsFit(double paperW, double paperH);

// While "User Defined" is selected: width and height within 1 to 100 inches (25.4 to 2540 millimetres), and
// the margins fit in the chosen orientation. True when valid.
bool CustomSizeValid();

// While a standard form is selected: the margins fit. In millimetres the form counts in whole millimetres. A
// form whose size is not known restricts nothing, for the user could not mend it. True when valid.
bool StandardFormValid();

// The test that belongs to the selected paper.
bool SizesValid();

// Copies the margins out of the open sheet's private record, in millimetres; false without a record.
bool ReadRecordMargins(float (&millimeters)[kMargins]);

// Takes the record's margins over into the state in the current unit, as if they had been typed.
void TakeRecordMargins();

// Writes the four margin texts into the private record, in millimetres, and answers 1. With inches
// `typedMargin` holds millimetres afterwards as well, which is deliberate; the texts stay as they are.
int CommitMargins();

}  // namespace kzp
