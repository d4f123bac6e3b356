// Help for an item of the driver's tree: the file lies in the driver's directory, the name comes from the
// texts.
#include "help/ItemHelp.h"

#include <gtest/gtest.h>

#include "core/Module.h"
#include "help/ResourceModule.h"
#include "resources/resource.h"
#include "tests/support/ScratchRegistry.h"
#include "tools/standins/spooler/SpoolerControl.h"

namespace kzp::test {
namespace {

namespace spooler = kzp::standins::spooler;

struct ItemHelp : testing::Test {
    ItemHelp() {
        EXPECT_TRUE(spooler::IsInPlace());
        spooler::SetUpPrinter({.name = L"KZP Test Printer", .driverFile = L"unidrv.dll"});
        wchar_t name[] = L"KZP Test Printer";
        EXPECT_TRUE(OpenPrinterW(name, &printer, nullptr));
    }
    ~ItemHelp() override {
        ClosePrinter(printer);
        HeapDestroy(heap);
    }

    BOOL Attach() {
        return SetItemHelp(printer, heap, GetModuleHandleW(nullptr), &item, 15001, IDS_ITEM_HELP_FILE);
    }
    void ExpectMarked() {
        EXPECT_EQ(0x10000u, item.Flags & OPTIF_HAS_POIEXT);
        EXPECT_EQ(15001u, item.HelpIndex);
        EXPECT_EQ(0u, g_cResModuleUses);
    }

    ScratchRegistry registry;
    HANDLE heap = HeapCreate(0, 0, 0);
    HANDLE printer = nullptr;
    OPTITEM item = {};
};

TEST_F(ItemHelp, KeepsAnExtensionThatTheDriverBrought) {
    OIEXT own = {};
    own.cbSize = sizeof own;
    own.Flags = 0x55;
    item.pOIExt = &own;
    EXPECT_TRUE(Attach());
    EXPECT_EQ(&own, item.pOIExt);
    EXPECT_EQ(0x55u, own.Flags);
    EXPECT_NE(nullptr, own.pHelpFile);
}

TEST_F(ItemHelp, WithoutTheDriversPathHasNoFileButIsMarked) {
    spooler::FailCall(L"GetPrinterDriverW", ERROR_ACCESS_DENIED);
    EXPECT_TRUE(Attach());
    EXPECT_EQ(nullptr, item.pOIExt->pHelpFile);
    ExpectMarked();
    spooler::FailCall(L"GetPrinterDriverW", ERROR_INSUFFICIENT_BUFFER);
    EXPECT_TRUE(Attach()) << "a block that is never large enough is not asked for without end";
    EXPECT_EQ(nullptr, item.pOIExt->pHelpFile);
}

}  // namespace
}  // namespace kzp::test
