// Thousands of font families: opening the dialog, choosing and storing grow with their number, not with its
// square.
#include <algorithm>
#include <cstdio>

#include "tests/advanced/FontsDialog.h"

namespace kzp::test {
namespace {

double Milliseconds() {
    LARGE_INTEGER frequency, count;
    QueryPerformanceFrequency(&frequency);
    QueryPerformanceCounter(&count);
    return 1e3 * static_cast<double>(count.QuadPart) / static_cast<double>(frequency.QuadPart);
}

// In no order, and each twice.
std::vector<std::wstring> Families(unsigned count) {
    std::vector<std::wstring> names;
    unsigned random = 7;
    for (unsigned index = 0; index < 2 * count; ++index) {
        random = (index == count ? 7 : random) * 1103515245 + 12345;
        names.push_back(std::wstring(1, static_cast<wchar_t>(L'A' + (random >> 16) % 26)) + L"amily " +
                        std::to_wstring(index % count));
    }
    return names;
}

TEST_F(FontsDialog, OpeningChoosingAndStoringGrowNoFasterThanTheNumberOfFonts) {
    double opening[2] = {}, choosing[2] = {}, storing[2] = {};
    for (int size = 0; size < 2; ++size) {
        const unsigned count = size == 0 ? 300 : 3000;
        Install(Families(count));
        opening[size] = choosing[size] = storing[size] = 1e9;
        for (int round = 0; round < 3; ++round) {
            std::vector<std::wstring> stored = Families(count);
            stored.resize(count - 1);
            Store(stored);
            const double start = Milliseconds();
            Open();
            const double opened = Milliseconds();
            ASSERT_TRUE(IsRadioChecked(IDC_FONTS_SELECT));
            ASSERT_EQ(count - 1, CheckedNames().size());
            const double before = Milliseconds();
            Click(IDC_FONTS_ALL);
            const double chosen = Milliseconds();
            Commit();
            const double committed = Milliseconds();
            ASSERT_EQ(count, StoredNames().size());
            opening[size] = std::min(opening[size], opened - start);
            choosing[size] = std::min(choosing[size], chosen - before);
            storing[size] = std::min(storing[size], committed - chosen);
        }
        std::printf("%u families: opening %.1f ms, \"All\" %.1f ms, commit %.1f ms\n", count, opening[size],
                    choosing[size], storing[size]);
    }
    // Ten times the fonts; a quadratic step would take a hundred times as long.
    EXPECT_LT(opening[1], 30 * opening[0]);
    EXPECT_LT(choosing[1], 30 * std::max(choosing[0], 1.0));
    EXPECT_LT(storing[1], 30 * std::max(storing[0], 1.0));
}

}  // namespace
}  // namespace kzp::test
