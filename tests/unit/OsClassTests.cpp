// The nine classes of operating systems.
#include "pages/output/OsClass.h"

#include <gtest/gtest.h>

namespace kzp::test {
namespace {

TEST(OsClass, FollowsPlatformAndVersion) {
    const struct {
        bool isNt;
        DWORD major, minor;
        int expected;
    } cases[] = {
        {true, 4, 0, 5},  {true, 5, 0, 6},   {true, 5, 1, 7},   {true, 5, 2, 1},
        {true, 6, 0, 8},  {true, 6, 1, 1},   {true, 10, 0, 1},  {false, 3, 11, 0},
        {false, 4, 0, 2}, {false, 4, 10, 3}, {false, 4, 90, 4}, {false, 5, 90, 2},
    };
    for (const auto& [isNt, major, minor, expected] : cases) {
        OSVERSIONINFOW record = {};
        record.dwMajorVersion = major;
        record.dwMinorVersion = minor;
        const DWORD version = (isNt ? 0 : 0x80000000) | minor << 8 | major;
        EXPECT_EQ(expected, ClassifyOs(version, record)) << isNt << ' ' << major << '.' << minor;
    }
}

}  // namespace
}  // namespace kzp::test
