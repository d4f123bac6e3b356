// Help for an item of the driver's tree: the file lies in the driver's directory, the name comes from the
// texts.
#include "help/ItemHelp.h"

#include <gtest/gtest.h>
#include <winspool.h>

#include <optional>
#include <string>

#include "resources/resource.h"
#include "tests/support/Counters.h"
#include "tests/support/Files.h"
#include "tests/support/ImportPatch.h"

namespace kzp::test {
namespace {

// What the spooler tells of the driver: after so many refusals for want of room; below 0 it has another
// reason.
struct {
    const wchar_t* path;
    int refusals;
} g_driver;

BOOL WINAPI TellDriver(HANDLE, LPWSTR, DWORD level, LPBYTE block, DWORD size, LPDWORD needed) {
    EXPECT_EQ(2u, level);
    *needed = size + sizeof(DRIVER_INFO_2W);
    if (g_driver.refusals != 0) {
        SetLastError(g_driver.refusals-- < 0 ? ERROR_ACCESS_DENIED : ERROR_INSUFFICIENT_BUFFER);
        return FALSE;
    }
    DRIVER_INFO_2W info = {};
    EXPECT_LE(sizeof info, size);
    info.pDriverPath = const_cast<LPWSTR>(g_driver.path);
    CopyMemory(block, &info, sizeof info);
    return TRUE;
}

std::wstring Directory(size_t length) {
    return L"C:\\" + std::wstring(length - 4, L'd') + L'\\';
}

TEST(ItemHelp, IsTheFileInTheDriversDirectoryOrNone) {
    const ImportPatch spooler(GetModuleHandleW(nullptr), "GetPrinterDriverW", AddressOf(&TellDriver));
    const std::wstring cut = Directory(248), full = Directory(260);
    const struct {
        std::optional<std::wstring> path;
        int refusals;
        std::wstring file = {};  // empty: none
    } cases[] = {
        {L"C:\\Drivers\\unidrv.dll", 4, L"C:\\Drivers\\kzpwriter.chm"},
        {L"C:\\Drivers\\unidrv.dll", 5},
        {L"C:\\Drivers\\unidrv.dll", -1},
        {L"unidrv.dll", 1},
        {std::nullopt, 1},
        {cut + L"u.dll", 1, cut + L"kzpwriter.ch"},
        {full + L"u.dll", 1},
        {Directory(261), 1, L"C:\\kzpwriter.chm"},  // its closing backslash is one character too far
    };
    wchar_t old[] = L"C:\\an old help file";
    for (const auto& [path, refusals, file] : cases) {
        g_driver = {path ? path->c_str() : nullptr, refusals};
        const HANDLE heap = HeapCreate(0, 0, 0);
        OIEXT own = {sizeof own, 0x55, nullptr, old, {}};
        OPTITEM item = {};
        item.pOIExt = &own;
        EXPECT_TRUE(SetItemHelp(nullptr, heap, GetModuleHandleW(nullptr), &item, 15001, IDS_ITEM_HELP_FILE));
        EXPECT_EQ(0x55u, own.Flags) << "what the driver brought is kept";
        EXPECT_EQ(file, own.pHelpFile ? own.pHelpFile : L"")
            << testing::PrintToString(path) << ", refused " << refusals;
        EXPECT_EQ(own.pHelpFile ? 1u : 0u, CountHeapBlocks(heap));
        HeapDestroy(heap);
    }
}

}  // namespace
}  // namespace kzp::test
