// Finding names in a list of fonts.
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

}  // namespace
}  // namespace kzp::test
