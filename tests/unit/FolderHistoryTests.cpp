// The stored folder history, taken apart and put together.
#include "pages/output/FolderHistory.h"

#include <gtest/gtest.h>

namespace kzp::test {
namespace {

using Names = std::vector<std::wstring>;

TEST(FolderHistory, EntriesEndAtTheirSeparator) {
    EXPECT_EQ(Names(), HistoryEntries(L""));
    EXPECT_EQ(Names(), HistoryEntries(L"C:\\A"));
    EXPECT_EQ((Names{L"C:\\A", L"D:\\B"}), HistoryEntries(L"C:\\A;D:\\B;"));
    EXPECT_EQ((Names{L"", L"A", L""}), HistoryEntries(L";A;;rest"));
}

TEST(FolderHistory, FiveSeparatorsMakeItFullAndTheOldestGoes) {
    EXPECT_FALSE(IsHistoryFull(L"A;B;C;D;E"));
    EXPECT_TRUE(IsHistoryFull(L"A;B;C;D;E;"));
    EXPECT_TRUE(IsHistoryFull(L";;;;;;"));

    std::wstring history = L"A;B;C;D;E;";
    EXPECT_EQ(L"A", DropOldest(history));
    AppendFolder(history, L"D:\\Out");
    EXPECT_EQ(L"B;C;D;E;D:\\Out;", history);
    history = L";B;";
    EXPECT_EQ(L"", DropOldest(history));
    EXPECT_EQ(L"B;", history);
    history = L"no separator";
    EXPECT_EQ(L"", DropOldest(history));
    EXPECT_EQ(L"no separator", history);
}

}  // namespace
}  // namespace kzp::test
