#include "pages/settings/Measures.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstring>

namespace kzp {

namespace {

// Of a paper dimension at least this much must be left between two margins.
constexpr double kLeastLeft = 0.001;

bool PairMisfits(const PageMeasureState& measures, Margin first, Margin second, double paper) {
    const double a = RoundToHundredths(measures.checkedMargin[first]);
    const double b = RoundToHundredths(measures.checkedMargin[second]);
    return a >= paper || b >= paper || a + b - paper >= -kLeastLeft;
}

bool MarginsFitTurnedPaper(const PageMeasureState& measures, double width, double height) {
    return measures.orientation != 0 ? MarginsFit(measures, width, height)
                                     : MarginsFit(measures, height, width);
}

}  // namespace

bool MarginsFit(const PageMeasureState& measures, double paperW, double paperH) {
    return !PairMisfits(measures, kLeft, kRight, paperW) && !PairMisfits(measures, kTop, kBottom, paperH);
}

bool CustomSizeValid(const PageMeasureState& measures) {
    const float width = measures.customWidth;
    const float height = measures.customHeight;
    if (measures.unit == kInches || measures.unit == kMillimeters) {
        // In single precision, as the values are: the smallest size in millimetres must pass its own test.
        const float least = measures.unit == kInches ? 1.0f : 25.4f;
        const float most = LargestTyped(measures.unit);
        if (width < least || width > most || height < least || height > most)
            return false;
    }
    return MarginsFitTurnedPaper(measures, width, height);
}

bool StandardFormValid(const PageMeasureState& measures) {
    double width = measures.formWidthIn;
    double height = measures.formHeightIn;
    if (width <= 0 || height <= 0)
        return true;
    if (measures.unit == kMillimeters) {
        width = std::floor(width * 25.4 + 0.5);
        height = std::floor(height * 25.4 + 0.5);
    }
    return MarginsFitTurnedPaper(measures, width, height);
}

bool SizesValid(const PageMeasureState& measures) {
    return measures.CustomSizeSelected ? CustomSizeValid(measures) : StandardFormValid(measures);
}

bool ReadRecordMargins(const KZPPrivateDevMode* record, float (&millimeters)[kMargins]) {
    if (!record)
        return false;
    std::memcpy(millimeters, record->fMargins, sizeof millimeters);
    return true;
}

void TakeRecordMargins(PageMeasureState& measures, const KZPPrivateDevMode* record) {
    float millimeters[kMargins];
    if (!ReadRecordMargins(record, millimeters))
        return;
    for (int margin = kLeft; margin < kMargins; ++margin) {
        FormatTwoDecimals(millimeters[margin] / MillimetersPerUnit(measures.unit),
                          measures.marginText[margin]);
        measures.typedMargin[margin] = measures.checkedMargin[margin] =
            ParseNumber(measures.marginText[margin]);
        measures.recordMargin[margin] = true;
    }
}

int CommitMargins(PageMeasureState& measures, KZPPrivateDevMode* record) {
    float own[kMargins] = {};
    (void)ReadRecordMargins(record, own);
    float(&margins)[kMargins] = measures.typedMargin;
    for (int margin = kLeft; margin < kMargins; ++margin) {
        const double typed = ParseNumber(measures.marginText[margin]);
        margins[margin] =
            measures.recordMargin[margin]
                ? own[margin]
                : static_cast<float>(std::min<double>(typed * MillimetersPerUnit(measures.unit), FLT_MAX));
    }
    if (record)
        std::memcpy(record->fMargins, margins, sizeof record->fMargins);
    return 1;
}

}  // namespace kzp
