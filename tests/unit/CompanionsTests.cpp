// The names of processes; finding and starting companions is tested with real programs.
#include "events/Companions.h"

#include <gtest/gtest.h>

namespace kzp::test {
namespace {

TEST(ProcessBaseName, IsTheExecutableFilesName) {
    wchar_t name[MAX_PATH] = {};
    ASSERT_TRUE(GetProcessBaseName(GetCurrentProcessId(), name));
    EXPECT_EQ(0, _wcsicmp(L"unit_tests.exe", name));
    EXPECT_FALSE(GetProcessBaseName(GetCurrentProcessId(), nullptr));
    EXPECT_FALSE(GetProcessBaseName(0, name));
    EXPECT_FALSE(GetProcessBaseName(0xFFFFFFFC, name)) << "no such process";
}

}  // namespace
}  // namespace kzp::test
