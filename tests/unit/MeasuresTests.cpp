// Whether paper and margins go together, and what the commit takes over from the page's numbers.
#include <gtest/gtest.h>

#include <algorithm>
#include <cwchar>
#include <iterator>
#include <vector>

#include "pages/settings/Measures.h"

namespace kzp {
namespace {

using Values = float[kMargins];

TEST(Sizes, HaveLimitsInTheirUnitAndMarginsMustLeaveSomeOfThePaper) {
    constexpr bool kCustom = true;
    constexpr bool kStandard = false;  // its size is in inches
    const struct {
        bool valid, custom;
        DWORD unit;
        float width, height;
        Values margins = {};  // left, top, right, bottom
    } cases[] = {
        {true, kCustom, kInches, 1, 100},
        {false, kCustom, kInches, 0.99f, 10},
        {false, kCustom, kInches, 10, 100.01f},
        {true, kCustom, kMillimeters, 25.4f, 2540},
        {false, kCustom, kMillimeters, 100, 25.39f},
        {false, kCustom, kMillimeters, 2540.1f, 100},
        {false, kCustom, kInches, 8.5f, 11, {4.25f, 0, 4.25f, 0}},    // nothing left
        {true, kCustom, kInches, 8.5f, 11, {4.25f, 0, 4.24f, 0}},     // a hundredth left
        {false, kCustom, kInches, 8.5f, 11, {4.25f, 0, 4.2446f, 0}},  // rounded to 4.25 first
        {false, kCustom, kInches, 8.5f, 11, {0, 5.5f, 0, 5.5f}},
        {true, kCustom, kInches, 8.5f, 11, {0, 5.5f, 0, 5.49f}},
        {false, kCustom, kInches, 8.2505f, 11, {4, 0, 4.25f, 0}},  // less than a thousandth is left
        {true, kCustom, kInches, 8.2515f, 11, {4, 0, 4.25f, 0}},
        // A standard form counts in whole millimetres, and restricts nothing while its size is not known.
        {true, kStandard, kMillimeters, 8.2677f, 11.6929f, {209.9f, 0, 0.05f, 0}},  // 210.0 x 297.0
        {false, kStandard, kMillimeters, 8.2677f, 11.6929f, {210, 0, 0, 0}},
        {true, kStandard, kMillimeters, 8.5f, 11, {215.95f, 0, 0, 0}},  // 215.9 counts as 216
        {true, kStandard, kInches, 0, 0, {9, 9, 9, 9}},
        {false, kStandard, kInches, 0.9f, 0.9f, {0, 0, 0, 0.9f}},
    };
    for (const auto& [valid, custom, unit, width, height, margins] : cases) {
        PageMeasureState measures = {.unit = unit, .CustomSizeSelected = custom};
        (custom ? measures.customWidth : measures.formWidthIn) = width;
        (custom ? measures.customHeight : measures.formHeightIn) = height;
        std::copy(std::begin(margins), std::end(margins), measures.checkedMargin);
        EXPECT_EQ(valid, SizesValid(measures)) << width << ' ' << height << ' ' << custom;
    }
}

TEST(Commit, WritesTheTextsAsMillimetres) {
    // The driver hands the record out at any address.
    BYTE block[sizeof(KZPPrivateDevMode) + 1] = {};
    auto* const record = reinterpret_cast<KZPPrivateDevMode*>(block + 1);
    PageMeasureState measures;
    const wchar_t* const texts[] = {L"0.5", L"1", L"0.08", L"2.00"};
    for (int margin = 0; margin < kMargins; ++margin)
        std::wcscpy(measures.marginText[margin], texts[margin]);
    const auto written = [&](DWORD unit) {
        measures.unit = unit;
        CommitMargins(measures, record);
        Values margins;
        EXPECT_TRUE(ReadRecordMargins(record, margins));
        return std::vector(margins, margins + kMargins);
    };
    // 0.08 tells in which precision the product is made: single would give 2.0319998.
    EXPECT_EQ(written(kInches), (std::vector{12.7f, 25.4f, 2.032f, 50.8f}));
    EXPECT_EQ(written(kMillimeters), (std::vector{0.5f, 1.0f, 0.08f, 2.0f}));
}

}  // namespace
}  // namespace kzp
