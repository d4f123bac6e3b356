// Whether paper and margins go together, and what the commit takes over from the page's numbers.
#include <gtest/gtest.h>

#include <cstring>
#include <cwchar>
#include <vector>

#include "pages/settings/Measures.h"

namespace kzp {
namespace {

class MeasuresTest : public testing::Test {
  protected:
    void SetMargins(float left, float top, float right, float bottom) {
        const float margins[] = {left, top, right, bottom};
        std::memcpy(measures.checkedMargin, margins, sizeof margins);
    }
    void SetForm(float width, float height) {
        measures.formWidthIn = width;
        measures.formHeightIn = height;
    }
    void SetCustom(DWORD unit, float width, float height) {
        measures.unit = unit;
        measures.customWidth = width;
        measures.customHeight = height;
    }

    PageMeasureState measures;
};

using Margins = MeasuresTest;
using CustomSize = MeasuresTest;
using StandardForm = MeasuresTest;
using Commit = MeasuresTest;

TEST_F(Margins, MustLeaveSomeOfThePaper) {
    const struct {
        float left, top, right, bottom;
        bool fit;
    } cases[] = {
        {0, 0, 0, 0, true},
        {4.25f, 0, 4.25f, 0, false},    // nothing left
        {4.25f, 0, 4.24f, 0, true},     // a hundredth left
        {4.25f, 0, 4.2446f, 0, false},  // rounded to 4.25 first
        {8.5f, 0, 0, 0, false},         // one margin alone
        {0, 0, 8.5f, 0, false},         //
        {0, 0, 0, 11, false},           //
        {0, 5.5f, 0, 5.5f, false},      // top and bottom take the height
        {0, 5.5f, 0, 5.49f, true},      //
        {8.4f, 10.9f, 0, 0, true},      //
    };
    for (const auto& c : cases) {
        SetMargins(c.left, c.top, c.right, c.bottom);
        EXPECT_EQ(MarginsFit(measures, 8.5, 11), c.fit)
            << c.left << ' ' << c.top << ' ' << c.right << ' ' << c.bottom;
    }
    SetMargins(4, 0, 4.25f, 0);
    EXPECT_FALSE(MarginsFit(measures, 8.2505, 11)) << "less than a thousandth is left";
    EXPECT_TRUE(MarginsFit(measures, 8.2515, 11));
}

TEST_F(CustomSize, HasLimitsInItsUnit) {
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
    for (const auto& c : cases) {
        SetCustom(c.unit, c.width, c.height);
        EXPECT_EQ(CustomSizeValid(measures), c.valid) << c.unit << ' ' << c.width << ' ' << c.height;
    }
}

TEST_F(StandardForm, CountsInWholeMillimetres) {
    SetForm(8.2677f, 11.6929f);  // 210.0 x 297.0
    measures.unit = kMillimeters;
    SetMargins(209.9f, 0, 0.05f, 0);
    EXPECT_TRUE(StandardFormValid(measures));
    SetMargins(210, 0, 0, 0);
    EXPECT_FALSE(StandardFormValid(measures));
    SetForm(8.5f, 11);  // 215.9 counts as 216
    SetMargins(215.95f, 0, 0, 0);
    EXPECT_TRUE(StandardFormValid(measures));
}

TEST_F(StandardForm, OfUnknownSizeRestrictsNothing) {
    SetMargins(9, 9, 9, 9);
    EXPECT_TRUE(StandardFormValid(measures));
    SetForm(1, 1);
    EXPECT_FALSE(StandardFormValid(measures));
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

TEST_F(Commit, WritesTheTextsAsMillimetresAndLeavesThemTyped) {
    Record record;
    const wchar_t* const texts[] = {L"0.5", L"1", L"0.08", L"2.00"};
    for (int margin = 0; margin < kMargins; ++margin)
        std::wcscpy(measures.marginText[margin], texts[margin]);
    EXPECT_EQ(CommitMargins(measures, record.at), 1);
    // 0.08 tells in which precision the product is made: single would give 2.0319998.
    EXPECT_EQ(record.Margins(), (std::vector<float>{12.7f, 25.4f, 2.032f, 50.8f}));
    for (int margin = 0; margin < kMargins; ++margin) {
        EXPECT_EQ(measures.typedMargin[margin], record.Margins()[static_cast<size_t>(margin)])
            << "millimetres in inches mode, as intended";
        EXPECT_STREQ(measures.marginText[margin], texts[margin]);
    }
    measures.unit = kMillimeters;
    CommitMargins(measures, record.at);
    EXPECT_EQ(record.Margins(), (std::vector<float>{0.5f, 1, 0.08f, 2}));
    EXPECT_EQ(CommitMargins(measures, nullptr), 1);
}

TEST_F(Commit, LeavesWhatWasOnlyTakenFromTheRecord) {
    Record record;
    const std::vector<float> stored = {5, 6, 7, 8};
    std::memcpy(record.at->fMargins, stored.data(), sizeof record.at->fMargins);
    TakeRecordMargins(measures, record.at);
    EXPECT_EQ(measures.checkedMargin[kTop], 0.24f) << "what the test of the margins sees";
    CommitMargins(measures, record.at);
    EXPECT_EQ(record.Margins(), stored);
}

}  // namespace
}  // namespace kzp
