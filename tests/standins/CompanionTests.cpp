// The companions' stand-in: what tests rely on when they use it.
#include <gtest/gtest.h>
#include <windows.h>

#include "core/SignalMapping.h"
#include "support/UniqueHandle.h"
#include "tests/support/Files.h"
#include "tools/standins/companions/Companions.h"

namespace kzp {
namespace {

using namespace standins;

bool MappingExists() {
    return static_cast<bool>(UniqueKernelHandle(OpenFileMappingW(FILE_MAP_READ, FALSE, kSignalMappingName)));
}

struct Search {
    DWORD process;
    bool found;
};

BOOL CALLBACK FindVisible(HWND window, LPARAM parameter) {
    auto& search = *reinterpret_cast<Search*>(parameter);
    DWORD owner = 0;
    GetWindowThreadProcessId(window, &owner);
    search.found = search.found || (owner == search.process && IsWindowVisible(window));
    return TRUE;
}

bool ShowsWindow(HANDLE process) {
    Search search{GetProcessId(process), false};
    EnumWindows(FindVisible, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

TEST(StandInCompanions, DoWhatTheyAreToldAndSayThatTheyWereStarted) {
    const test::TemporaryFolder folder;
    const std::wstring path = PlaceCompanion(folder.Path(), L"KzpWriterInteraction.exe", kShowsWindow);
    ASSERT_FALSE(path.empty());
    const struct {
        const wchar_t* told;  // null: by the file beside it
        bool window, mapping;
    } cases[] = {{nullptr, true, false}, {kHoldsMapping, false, true}, {kDoesNothing, false, false}};
    for (const auto& [told, window, mapping] : cases) {
        const UniqueKernelHandle process = StartCompanion(path, told);
        ASSERT_TRUE(process);
        ASSERT_TRUE(WaitReady(L"KzpWriterInteraction.exe"));
        EXPECT_EQ(window, ShowsWindow(process.Get()));
        EXPECT_EQ(mapping, MappingExists());
        EXPECT_TRUE(QuitAll());
        EXPECT_EQ(WAIT_OBJECT_0, WaitForSingleObject(process.Get(), 5000));
    }
    EXPECT_FALSE(MappingExists());
    const std::vector<std::wstring> starts = Starts(path);
    ASSERT_EQ(3u, starts.size());
    EXPECT_EQ(L"\"" + path + L"\"", starts[0]);
    EXPECT_EQ(L"\"" + path + L"\" mapping", starts[1]);
}

}  // namespace
}  // namespace kzp
