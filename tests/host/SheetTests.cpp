// The driver host itself: what it claims to switch, refuse and write down, it must.
#include <gtest/gtest.h>

#include "tests/support/HostedSheet.h"
#include "tests/support/ScratchRegistry.h"

namespace {

using namespace driverhost;
using kzp::test::HostedSheet;
using kzp::test::NoPrinter;

class SheetTest : public testing::Test {
  protected:
    kzp::test::ScratchRegistry m_registry;
};

TEST_F(SheetTest, AnAcceptedApplyMovesTheSelectionsIntoTheDeviceMode) {
    HostedSheet host(NoPrinter());
    host.run.Add([](SheetUser& user) { user.ClickTab(0); });
    host.run.Add([&](SheetUser& user) {
        host.session.UIParam().OEMCUIPCallback = nullptr;
        user.SelectDriverOption("PaperSize", 5);
        user.SelectDriverOption("Resolution", 3);
        user.Ok();
    });
    EXPECT_EQ(host.run.Show(), CPSUI_OK);
    EXPECT_EQ(host.sheet.Applied(), 1);
    EXPECT_EQ(host.session.DevMode().Public()->dmPaperSize, DMPAPER_A4);
    EXPECT_EQ(host.session.DevMode().Public()->dmPrintQuality, 600);
    EXPECT_STREQ(host.session.DevMode().Public()->dmFormName, L"A4");
}

TEST_F(SheetTest, AControlThatCannotBeUsedEndsTheRun) {
    HostedSheet host(NoPrinter());
    host.run.Add([](SheetUser& user) { user.Click(4711); });
    bool reached = false;
    host.run.Add([&](SheetUser&) { reached = true; });
    EXPECT_THROW(host.run.Show(), HostError);
    EXPECT_FALSE(reached);
}

}  // namespace
