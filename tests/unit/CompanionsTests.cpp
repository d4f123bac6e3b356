// Finding the viewer and the names of processes; what is started from them is tested with real programs.
#include "events/Companions.h"

#include <gtest/gtest.h>

#include "tests/support/Files.h"
#include "tests/support/ScratchRegistry.h"

namespace kzp::test {
namespace {

constexpr wchar_t kProductInfoKey[] = L"SOFTWARE\\Wow6432Node\\Brimlake\\Plansight\\ProductInfo";

TEST(Viewer, IsAnsweredWithItsPathOnlyWhenItIsThere) {
    const ScratchRegistry registry;
    const TemporaryFolder folder;
    wchar_t path[MAX_PATH] = L"untouched";
    WriteText(HKEY_LOCAL_MACHINE, kProductInfoKey, L"Location", folder.Path() + L"\\");
    EXPECT_FALSE(FindViewer(path));
    EXPECT_STREQ(L"untouched", path);
    WriteFileText(folder.File(L"PlansightApp.exe"), "");
    EXPECT_TRUE(FindViewer(path));
    EXPECT_EQ(folder.File(L"PlansightApp.exe"), path);
    EXPECT_TRUE(FindViewer(nullptr));
}

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
