#include "pages/settings/Measures.h"

#include <cmath>
#include <cstring>

#include "core/KZPPrivateDevMode.h"
#include "settings/SheetState.h"

namespace kzp {

constinit PageMeasureState g_measures;

namespace {

// Of a paper dimension at least this much must be left between two margins.
constexpr double kLeastLeft = 0.001;

bool PairMisfits(Margin first, Margin second, double paper) {
    const double a = RoundToHundredths(g_measures.checkedMargin[first]);
    const double b = RoundToHundredths(g_measures.checkedMargin[second]);
    return a >= paper || b >= paper || a + b - paper >= -kLeastLeft;
}

bool MarginsFitTurnedPaper(double width, double height) {
    return g_measures.orientation != 0 ? MarginsFit(width, height) : MarginsFit(height, width);
}

KZPPrivateDevMode* Record() {
    return g_sheet.CurrentUIParam ? static_cast<KZPPrivateDevMode*>(g_sheet.CurrentUIParam->pOEMDM) : nullptr;
}

}  // namespace

bool MarginsFit(double paperW, double paperH) {
    return !PairMisfits(kLeft, kRight, paperW) && !PairMisfits(kTop, kBottom, paperH);
}

bool CustomSizeValid() {
    const float width = g_measures.customWidth;
    const float height = g_measures.customHeight;
    if (g_measures.unit == kInches || g_measures.unit == kMillimeters) {
        // In single precision, as the values are: the smallest size in millimetres must pass its own test.
        const float least = g_measures.unit == kInches ? 1.0f : 25.4f;
        const float most = LargestTyped(g_measures.unit);
        if (width < least || width > most || height < least || height > most)
            return false;
    }
    return MarginsFitTurnedPaper(width, height);
}

bool StandardFormValid() {
    double width = g_measures.formWidthIn;
    double height = g_measures.formHeightIn;
    if (width <= 0 || height <= 0)
        return true;
    if (g_measures.unit == kMillimeters) {
        width = std::floor(width * 25.4 + 0.5);
        height = std::floor(height * 25.4 + 0.5);
    }
    return MarginsFitTurnedPaper(width, height);
}

bool SizesValid() {
    return g_measures.CustomSizeSelected ? CustomSizeValid() : StandardFormValid();
}

bool ReadRecordMargins(float (&millimeters)[kMargins]) {
    const KZPPrivateDevMode* const record = Record();
    if (!record)
        return false;
    std::memcpy(millimeters, record->fMargins, sizeof millimeters);
    return true;
}

void TakeRecordMargins() {
    float millimeters[kMargins];
    if (!ReadRecordMargins(millimeters))
        return;
    for (int margin = kLeft; margin < kMargins; ++margin) {
        FormatTwoDecimals(millimeters[margin] / MillimetersPerUnit(g_measures.unit),
                          g_measures.marginText[margin]);
        g_measures.typedMargin[margin] = g_measures.checkedMargin[margin] =
            ParseNumber(g_measures.marginText[margin]);
    }
}

int CommitMargins() {
    float(&margins)[kMargins] = g_measures.typedMargin;
    for (int margin = kLeft; margin < kMargins; ++margin) {
        margins[margin] = ParseNumber(g_measures.marginText[margin]);
        if (g_measures.unit == kInches)
            margins[margin] *= 25.4f;
    }
    if (KZPPrivateDevMode* const record = Record())
        std::memcpy(record->fMargins, margins, sizeof record->fMargins);
    return 1;
}

}  // namespace kzp
