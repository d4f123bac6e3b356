// Drivers, printers and registries that give the sheet less than it wants, and many sheets in one process.
#include <cstdlib>

#include "resources/resource.h"
#include "tests/sheet/SheetTest.h"
#include "tests/support/Counters.h"

namespace kzp::test {
namespace {

namespace spooler = standins::spooler;
using driverhost::SheetUser;

// HKEY_CURRENT_USER of this process as a key in which nothing can be created to last.
class ReadOnlyUser {
  public:
    ReadOnlyUser() {
        HKEY key = nullptr;
        EXPECT_EQ(ERROR_SUCCESS,
                  RegCreateKeyExW(HKEY_CURRENT_USER, L"Volatile", 0, nullptr, REG_OPTION_VOLATILE,
                                  KEY_ALL_ACCESS, nullptr, &key, nullptr));
        EXPECT_EQ(ERROR_SUCCESS, RegOverridePredefKey(HKEY_CURRENT_USER, key));
        RegCloseKey(key);
    }
    static bool StoredAnything() { return KeyExists(HKEY_CURRENT_USER, kSettingsKey); }
};

enum class Lack {
    kNothing,
    kPlugInItem,
    kDriverItems,
    kMostItems,
    kHeap,
    kPrinter,
    kHandle,
    kRecord,
    kRegistry
};

std::string NameOf(const testing::TestParamInfo<Lack>& lack) {
    constexpr const char* names[] = {"Nothing", "PlugInItem", "DriverItems", "MostItems", "Heap",
                                     "Printer", "Handle",     "Record",      "Registry"};
    return names[static_cast<size_t>(lack.param)];
}

class Poor : public SheetTest, public testing::WithParamInterface<Lack> {};

// The user edits what there is, applies, and closes with OK.
TEST_P(Poor, SheetOpensAppliesAndCloses) {
    driverhost::SessionOptions options;
    options.plugInItem = GetParam() != Lack::kPlugInItem;
    if (GetParam() == Lack::kDriverItems)
        options.firstItems = 0;
    if (GetParam() == Lack::kMostItems)
        options.firstItems = 2;
    HostedSheet host(std::move(options));
    OEMCUIPPARAM& param = host.session.UIParam();
    std::optional<ReadOnlyUser> user;
    if (GetParam() == Lack::kHeap)
        param.hOEMHeap = nullptr;
    if (GetParam() == Lack::kHandle)
        param.hPrinter = reinterpret_cast<HANDLE>(0x1230);
    if (GetParam() == Lack::kRecord)
        param.pOEMDM = nullptr;
    if (GetParam() == Lack::kRegistry)
        user.emplace();
    if (GetParam() == Lack::kPrinter) {
        for (const wchar_t* const function :
             {L"GetPrinterW", L"SetPrinterW", L"GetPrinterDataW", L"SetPrinterDataW", L"GetFormW",
              L"AddFormW", L"SetFormW", L"GetPrinterDriverW", L"OpenPrinterW"})
            spooler::FailCall(function, ERROR_ACCESS_DENIED);
    }
    host.run.Add([&](SheetUser& page) {
        EXPECT_EQ(1, host.sheet.CurrentPage());
        for (int tab = 0; tab < 3; ++tab)
            EXPECT_NE(nullptr, host.sheet.PageWindow(tab)) << tab;
        page.Type(IDC_LEFT, L"0.25");
        page.Click(IDC_OUTPUT_KZP);
        page.Click(IDC_LANDSCAPE);
        page.Apply();
    });
    host.run.Add([](SheetUser& page) { page.Ok(); });
    EXPECT_EQ(CPSUI_OK, host.run.Show());
    EXPECT_EQ(2, host.sheet.Applied());
    EXPECT_EQ(GetParam() == Lack::kRegistry, !Setting(L"OutputType"));
    if (GetParam() != Lack::kRegistry) {
        EXPECT_EQ(1u, Setting(L"OutputType")->Dword());
        EXPECT_EQ(L"YES", Setting(L"LaunchKZPView")->Text());
    }
}

INSTANTIATE_TEST_SUITE_P(Lacks, Poor,
                         testing::Values(Lack::kNothing, Lack::kPlugInItem, Lack::kDriverItems,
                                         Lack::kMostItems, Lack::kHeap, Lack::kPrinter, Lack::kHandle,
                                         Lack::kRecord, Lack::kRegistry),
                         NameOf);

struct Counts {
    size_t handles, blocks, windows;
};

Counts Count() {
    return {CountHandles(), CountHeapBlocks(), CountWindows()};
}

// GDI and USER objects cannot be counted on Wine; windows can.
TEST_F(SheetTest, ManySheetsInOneProcessLeaveNothingBehind) {
    constexpr int kWarmUp = 3;
    const int sheets = std::getenv("KZP_LONG_RUN") ? 200 : 40;
    const driverhost::PlugIn plugIn(driverhost::BesideProgram(L"KZPWriterUI.dll"));
    driverhost::DocumentSession session(plugIn, {});
    Counts before = {};
    for (int number = -kWarmUp; number < sheets; ++number) {
        if (number == 0)
            before = Count();
        {
            driverhost::HostSheet sheet(session);
            driverhost::SheetRun run(sheet);
            run.Add([number](SheetUser& user) {
                user.Type(IDC_LEFT, number % 2 ? L"0.5" : L"0.25");
                number % 3 ? user.Ok() : user.Cancel();
            });
            run.Show();
        }
        session.Helper().Announcements() = {};
    }
    const Counts after = Count();
    std::printf("%d sheets: handles %zu -> %zu, heap blocks %zu -> %zu, windows %zu -> %zu\n", sheets,
                before.handles, after.handles, before.blocks, after.blocks, before.windows, after.windows);
    EXPECT_EQ(before.handles, after.handles);
    EXPECT_EQ(before.windows, after.windows);
    EXPECT_EQ(before.blocks, after.blocks);
}

}  // namespace
}  // namespace kzp::test
