#include <gtest/gtest.h>

#include "settings/CKZPWriterSettings.h"

namespace kzp {
namespace {

TEST(QualityIndex, IsTheLargestListedResolutionNotAboveTheDpi) {
    const struct {
        int dpi;
        DWORD index;
    } cases[] = {{0, 0},   {150, 0}, {200, 0},  {299, 0},  {300, 1},  {399, 1},   {400, 2},
                 {599, 2}, {600, 3}, {1199, 3}, {1200, 4}, {2400, 4}, {0x7FFF, 4}};
    for (const auto& [dpi, index] : cases)
        EXPECT_EQ(index, QualityIndexFromDpi(static_cast<WORD>(dpi))) << dpi;
}

TEST(QualityIndex, TakesTheNegativeDeviceIndependentQualitiesAsVeryFine) {
    for (int quality = DMRES_HIGH; quality <= DMRES_DRAFT; ++quality)
        EXPECT_EQ(4u, QualityIndexFromDpi(static_cast<WORD>(quality))) << quality;
}

TEST(QualityIndex, StartsInTheMiddleAndStaysWithoutAPrinter) {
    CKZPWriterSettings settings;
    settings.LoadFromPrinter(nullptr);
    EXPECT_EQ(2u, settings.QualityIndex());
    EXPECT_EQ(280, settings.PaperSize());
}

}  // namespace
}  // namespace kzp
