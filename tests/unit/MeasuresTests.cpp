// Whether paper and margins go together, and what the commit takes over from the page's numbers.
#include <gtest/gtest.h>

#include <cstring>
#include <cwchar>

#include "core/KZPPrivateDevMode.h"
#include "pages/settings/Measures.h"
#include "settings/SheetState.h"

namespace kzp {
namespace {

// A fresh state for each test, and the process-wide one as it was afterwards.
class MeasuresTest : public testing::Test {
  protected:
    MeasuresTest() { g_measures = {}; }
    ~MeasuresTest() override {
        g_measures = {};
        g_sheet.CurrentUIParam = nullptr;
    }

    static void SetMargins(float left, float top, float right, float bottom) {
        const float margins[] = {left, top, right, bottom};
        std::memcpy(g_measures.checkedMargin, margins, sizeof margins);
    }
    static void SetForm(float width, float height) {
        g_measures.formWidthIn = width;
        g_measures.formHeightIn = height;
    }
    static void SetCustom(DWORD unit, float width, float height) {
        g_measures.unit = unit;
        g_measures.customWidth = width;
        g_measures.customHeight = height;
    }
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
        {0, 5.5f, 0, 5.5f, false},      // top and bottom take the height
        {0, 5.5f, 0, 5.49f, true},      //
        {8.4f, 10.9f, 0, 0, true},      //
    };
    for (const auto& c : cases) {
        SetMargins(c.left, c.top, c.right, c.bottom);
        EXPECT_EQ(MarginsFit(8.5, 11), c.fit) << c.left << ' ' << c.top << ' ' << c.right << ' ' << c.bottom;
    }
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
        EXPECT_EQ(CustomSizeValid(), c.valid) << c.unit << ' ' << c.width << ' ' << c.height;
    }
}

TEST_F(StandardForm, CountsInWholeMillimetres) {
    SetForm(8.2677f, 11.6929f);  // 210.0 x 297.0
    g_measures.unit = kMillimeters;
    SetMargins(209.9f, 0, 0.05f, 0);
    EXPECT_TRUE(StandardFormValid());
    SetMargins(210, 0, 0, 0);
    EXPECT_FALSE(StandardFormValid());
    SetForm(8.5f, 11);  // 215.9 counts as 216
    SetMargins(215.95f, 0, 0, 0);
    EXPECT_TRUE(StandardFormValid());
}

TEST_F(StandardForm, OfUnknownSizeRestrictsNothing) {
    SetMargins(9, 9, 9, 9);
    EXPECT_TRUE(StandardFormValid());
    SetForm(1, 1);
    EXPECT_FALSE(StandardFormValid());
}

TEST_F(Commit, WritesTheTextsAsMillimetresAndLeavesThemTyped) {
    // The driver hands the record out at any address.
    BYTE block[sizeof(KZPPrivateDevMode) + 1] = {};
    const auto record = reinterpret_cast<KZPPrivateDevMode*>(block + 1);
    OEMCUIPPARAM param = {};
    param.pOEMDM = record;
    g_sheet.CurrentUIParam = &param;
    const wchar_t* const texts[] = {L"0.5", L"1", L"", L"2.00"};
    for (int margin = 0; margin < kMargins; ++margin)
        std::wcscpy(g_measures.marginText[margin], texts[margin]);
    EXPECT_EQ(CommitMargins(), 1);
    float written[kMargins];
    ASSERT_TRUE(ReadRecordMargins(written));
    const float expected[] = {12.7f, 25.4f, 0, 50.8f};
    for (int margin = 0; margin < kMargins; ++margin) {
        EXPECT_EQ(written[margin], expected[margin]);
        EXPECT_EQ(g_measures.typedMargin[margin], expected[margin])
            << "millimetres in inches mode, as intended";
        EXPECT_STREQ(g_measures.marginText[margin], texts[margin]);
    }
    g_measures.unit = kMillimeters;
    CommitMargins();
    ASSERT_TRUE(ReadRecordMargins(written));
    EXPECT_EQ(written[kLeft], 0.5f);
}

}  // namespace
}  // namespace kzp
