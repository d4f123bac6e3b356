// Help for an item of the driver's tree: the file lies in the driver's directory, the name comes from the
// texts.
#include "help/ItemHelp.h"

#include <gtest/gtest.h>
#include <winspool.h>

#include <optional>
#include <string>

#include "help/ResourceModule.h"
#include "resources/resource.h"
#include "tests/support/Counters.h"
#include "tests/support/Files.h"
#include "tests/support/ImportPatch.h"

namespace kzp::test {
namespace {

// What the spooler tells of the driver: only to so many calls, and only where there is room.
struct {
    const wchar_t* path;
    int callsNeeded;
    int calls;
} g_driver;

BOOL WINAPI TellDriver(HANDLE, LPWSTR environment, DWORD level, LPBYTE block, DWORD size, LPDWORD needed) {
    EXPECT_EQ(nullptr, environment);
    EXPECT_EQ(2u, level);
    *needed = sizeof(DRIVER_INFO_2W);
    if (++g_driver.calls < g_driver.callsNeeded || size < *needed) {
        *needed += size;
        SetLastError(g_driver.callsNeeded == 0 ? ERROR_ACCESS_DENIED : ERROR_INSUFFICIENT_BUFFER);
        return FALSE;
    }
    DRIVER_INFO_2W info = {};
    info.pDriverPath = const_cast<LPWSTR>(g_driver.path);
    CopyMemory(block, &info, sizeof info);
    return TRUE;
}

std::wstring Directory(size_t length) {
    return L"C:\\" + std::wstring(length - 4, L'd') + L'\\';
}

TEST(ItemHelp, IsTheFileInTheDriversDirectoryOrNone) {
    const ImportPatch spooler(GetModuleHandleW(nullptr), "GetPrinterDriverW", AddressOf(&TellDriver));
    const std::wstring fits = Directory(247), cut = Directory(248), full = Directory(260);
    const struct {
        std::optional<std::wstring> path;
        int callsNeeded;  // 0: the spooler refuses
        int calls;
        std::wstring file;  // empty: none
    } cases[] = {
        {L"C:\\Drivers\\unidrv.dll", 2, 2, L"C:\\Drivers\\kzpwriter.chm"},
        {L"C:\\Drivers\\unidrv.dll", 5, 5, L"C:\\Drivers\\kzpwriter.chm"},
        {L"C:\\Drivers\\unidrv.dll", 6, 5, L""},
        {L"C:\\Drivers\\unidrv.dll", 0, 1, L""},
        {L"unidrv.dll", 2, 2, L""},
        {std::nullopt, 2, 2, L""},
        {fits + L"u.dll", 2, 2, fits + L"kzpwriter.chm"},
        {cut + L"u.dll", 2, 2, cut + L"kzpwriter.ch"},
        {full + L"u.dll", 2, 2, L""},
        {Directory(261), 2, 2, L"C:\\kzpwriter.chm"},  // its closing backslash is one character too far
    };
    wchar_t old[] = L"C:\\an old help file";
    for (const auto& expected : cases) {
        SCOPED_TRACE(testing::Message() << &expected - cases);
        g_driver = {expected.path ? expected.path->c_str() : nullptr, expected.callsNeeded, 0};
        const HANDLE heap = HeapCreate(0, 0, 0);
        OIEXT own = {sizeof own, 0x55, nullptr, old, {}};
        OPTITEM item = {};
        item.pOIExt = &own;
        EXPECT_TRUE(SetItemHelp(nullptr, heap, GetModuleHandleW(nullptr), &item, 15001, IDS_ITEM_HELP_FILE));
        EXPECT_EQ(expected.calls, g_driver.calls);
        EXPECT_EQ(&own, item.pOIExt);
        EXPECT_EQ(0x55u, own.Flags) << "what the driver brought is kept";
        EXPECT_EQ(expected.file, own.pHelpFile ? own.pHelpFile : L"");
        EXPECT_EQ(expected.file.empty(), own.pHelpFile == nullptr);
        EXPECT_EQ(own.pHelpFile ? 1u : 0u, CountHeapBlocks(heap));
        EXPECT_EQ(0x10000u, item.Flags & OPTIF_HAS_POIEXT);
        EXPECT_EQ(15001u, item.HelpIndex);
        EXPECT_EQ(0u, g_cResModuleUses);
        HeapDestroy(heap);
    }
}

}  // namespace
}  // namespace kzp::test
