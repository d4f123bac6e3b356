#include "core/DebugTrace.h"

#include <gtest/gtest.h>

#include <string>

namespace kzp {
namespace {

TEST(DebugTrace, TellsWhetherTheTextWasCut) {
    EXPECT_FALSE(DebugTrace(nullptr));
    EXPECT_TRUE(DebugTrace(L"%s %d", L"text", 1));
    EXPECT_TRUE(DebugTrace(L"%s", std::wstring(260, L'x').c_str()));
    EXPECT_FALSE(DebugTrace(L"%s", std::wstring(261, L'x').c_str()));
}

}  // namespace
}  // namespace kzp
