#include "core/DebugTrace.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/ImportPatch.h"

namespace kzp::test {
namespace {

std::wstring g_written;

void WINAPI NoteText(const wchar_t* text) {
    g_written += text;
}

TEST(DebugTrace, WritesACutTextAsWellAndTellsOfIt) {
    const ImportPatch patch(GetModuleHandleW(nullptr), "OutputDebugStringW", AddressOf(NoteText));
    EXPECT_FALSE(DebugTrace(nullptr));
    EXPECT_EQ(L"", g_written);
    for (const size_t length : {259u, 260u, 261u, 5000u}) {
        g_written.clear();
        EXPECT_EQ(length <= 260, DebugTrace(L"%d%s", 7, std::wstring(length - 1, L'x').c_str()));
        EXPECT_EQ(L"7" + std::wstring(std::min<size_t>(length, 260) - 1, L'x'), g_written) << length;
    }
}

}  // namespace
}  // namespace kzp::test
