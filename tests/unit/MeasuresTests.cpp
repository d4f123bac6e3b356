// Whether paper and margins go together, and what the commit takes over from the page's numbers.
#include <gtest/gtest.h>

#include <cstring>
#include <cwchar>
#include <vector>

#include "pages/settings/Measures.h"

namespace kzp {
namespace {

using Values = float[kMargins];

TEST(Margins, MustLeaveSomeOfThePaper) {
    const struct {
        Values margins;  // left, top, right, bottom
        bool fit;
        double width = 8.5;
    } cases[] = {
        {{0, 0, 0, 0}, true},
        {{4.25f, 0, 4.25f, 0}, false},    // nothing left
        {{4.25f, 0, 4.24f, 0}, true},     // a hundredth left
        {{4.25f, 0, 4.2446f, 0}, false},  // rounded to 4.25 first
        {{8.5f, 0, 0, 0}, false},         // one margin alone
        {{0, 0, 8.5f, 0}, false},
        {{0, 0, 0, 11}, false},
        {{0, 5.5f, 0, 5.5f}, false},  // top and bottom take the height
        {{0, 5.5f, 0, 5.49f}, true},
        {{8.4f, 10.9f, 0, 0}, true},
        {{4, 0, 4.25f, 0}, false, 8.2505},  // less than a thousandth is left
        {{4, 0, 4.25f, 0}, true, 8.2515},
    };
    for (const auto& [margins, fit, width] : cases) {
        PageMeasureState measures;
        std::memcpy(measures.checkedMargin, margins, sizeof margins);
        EXPECT_EQ(fit, MarginsFit(measures, width, 11)) << testing::PrintToString(margins);
    }
}

TEST(CustomSize, HasLimitsInItsUnit) {
    const struct {
        DWORD unit;
        float width, height;
        bool valid;
    } cases[] = {
        {kInches, 1, 100, true},
        {kInches, 0.99f, 10, false},
        {kInches, 10, 100.01f, false},
        {kMillimeters, 25.4f, 2540, true},
        {kMillimeters, 25.39f, 100, false},
        {kMillimeters, 100, 2540.1f, false},
        {7, 5000, 5000, true},  // a unit that nobody knows has no limits
    };
    for (const auto& [unit, width, height, valid] : cases) {
        const PageMeasureState measures = {.unit = unit, .customWidth = width, .customHeight = height};
        EXPECT_EQ(valid, CustomSizeValid(measures)) << unit << ' ' << width << ' ' << height;
    }
}

TEST(StandardForm, CountsInWholeMillimetresAndRestrictsNothingWhileItsSizeIsNotKnown) {
    const struct {
        DWORD unit;
        float width, height;  // inches
        Values margins;
        bool valid;
    } cases[] = {
        {kMillimeters, 8.2677f, 11.6929f, {209.9f, 0, 0.05f, 0}, true},  // 210.0 x 297.0
        {kMillimeters, 8.2677f, 11.6929f, {210, 0, 0, 0}, false},
        {kMillimeters, 8.5f, 11, {215.95f, 0, 0, 0}, true},  // 215.9 counts as 216
        {kInches, 0, 0, {9, 9, 9, 9}, true},
        {kInches, 1, 1, {9, 9, 9, 9}, false},
    };
    for (const auto& [unit, width, height, margins, valid] : cases) {
        PageMeasureState measures = {.unit = unit, .formWidthIn = width, .formHeightIn = height};
        std::memcpy(measures.checkedMargin, margins, sizeof margins);
        EXPECT_EQ(valid, StandardFormValid(measures)) << width << ' ' << testing::PrintToString(margins);
    }
}

// The driver hands the record out at any address.
struct Record {
    BYTE block[sizeof(KZPPrivateDevMode) + 1] = {};
    KZPPrivateDevMode* const at = reinterpret_cast<KZPPrivateDevMode*>(block + 1);

    std::vector<float> Margins() const {
        float margins[kMargins];
        EXPECT_TRUE(ReadRecordMargins(at, margins));
        return std::vector<float>(margins, margins + kMargins);
    }
};

TEST(Commit, WritesTheTextsAsMillimetresAndLeavesThemTyped) {
    Record record;
    PageMeasureState measures;
    const wchar_t* const texts[] = {L"0.5", L"1", L"0.08", L"2.00"};
    for (int margin = 0; margin < kMargins; ++margin)
        std::wcscpy(measures.marginText[margin], texts[margin]);
    EXPECT_EQ(CommitMargins(measures, record.at), 1);
    // 0.08 tells in which precision the product is made: single would give 2.0319998.
    const std::vector<float> inches = {12.7f, 25.4f, 2.032f, 50.8f};
    EXPECT_EQ(record.Margins(), inches);
    EXPECT_EQ(std::vector(measures.typedMargin, measures.typedMargin + kMargins), inches) << "as intended";
    for (int margin = 0; margin < kMargins; ++margin)
        EXPECT_STREQ(measures.marginText[margin], texts[margin]);
    measures.unit = kMillimeters;
    CommitMargins(measures, record.at);
    EXPECT_EQ(record.Margins(), (std::vector<float>{0.5f, 1, 0.08f, 2}));
    EXPECT_EQ(CommitMargins(measures, nullptr), 1);
}

TEST(Commit, LeavesWhatWasOnlyTakenFromTheRecord) {
    Record record;
    PageMeasureState measures;
    const std::vector<float> stored = {5, 6, 7, 8};
    std::memcpy(record.at->fMargins, stored.data(), sizeof record.at->fMargins);
    TakeRecordMargins(measures, record.at);
    EXPECT_EQ(measures.checkedMargin[kTop], 0.24f) << "what the test of the margins sees";
    CommitMargins(measures, record.at);
    EXPECT_EQ(record.Margins(), stored);
}

}  // namespace
}  // namespace kzp
