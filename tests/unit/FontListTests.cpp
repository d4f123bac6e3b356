// Finding names in a list of fonts, and taking them from the records in which they are stored.
#include "pages/advanced/FontList.h"

#include <gtest/gtest.h>

namespace kzp::test {
namespace {

TEST(NameIndex, FindsTheFirstOfSeveralEqualsWithoutRegardToCase) {
    const std::vector<std::wstring> names = {L"zeta", L"Alpha", L"ALPHA", L"\x00C4rger", L"", L"Beta"};
    const NameIndex index(names);
    EXPECT_EQ(0, index.Find(L"ZETA"));
    EXPECT_EQ(1, index.Find(L"alpha"));
    EXPECT_EQ(3, index.Find(L"\x00E4rger"));
    EXPECT_EQ(4, index.Find(L""));
    EXPECT_EQ(5, index.Find(std::wstring_view(L"Beta and more", 4)));
    EXPECT_EQ(-1, index.Find(L"Bet"));
    EXPECT_EQ(-1, NameIndex({}).Find(L"Beta"));
}

TEST(FontRecord, EndsWhereItEndsAlsoWithoutATerminator) {
    const FontRecord record = MakeFontRecord(std::wstring(31, L'x'));
    FontRecord full = record;
    full.faceName[LF_FACESIZE - 1] = L'x';
    EXPECT_EQ(FaceNameOf(record), FaceNameOf(full));
}

}  // namespace
}  // namespace kzp::test
