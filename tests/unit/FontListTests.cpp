// Stored font records, the choice they lead to, and finding names in a list.
#include "pages/advanced/FontList.h"

#include <gtest/gtest.h>

#include <cstring>

namespace kzp::test {
namespace {

TEST(FontRecord, HoldsAtMost31Characters) {
    for (const size_t length : {0u, 1u, 30u, 31u, 32u, 40u}) {
        const std::wstring name(length, L'x');
        const FontRecord record = MakeFontRecord(name);
        EXPECT_EQ(L'\0', record.faceName[31]);
        EXPECT_EQ(name.substr(0, 31), FaceNameOf(record));
    }
    FontRecord damaged;
    std::memset(&damaged, 'x', sizeof damaged);
    EXPECT_EQ(31u, FaceNameOf(damaged).size());
}

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

}  // namespace
}  // namespace kzp::test
