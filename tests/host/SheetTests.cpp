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

TEST_F(SheetTest, OpensOnThePageThatThePlugInNames) {
    HostedSheet host(NoPrinter());
    host.run.Add([&](SheetUser&) {
        EXPECT_EQ(host.sheet.PageCount(), 3);
        EXPECT_EQ(host.sheet.CurrentPage(), 1);
        EXPECT_EQ(host.sheet.TabText(0), L"Printer Features");
    });
    EXPECT_EQ(host.run.Show(), CPSUI_CANCEL);
    EXPECT_EQ(host.sheet.Applied(), 0);
}

TEST_F(SheetTest, CtrlTabVisitsEveryPageAndComesBack) {
    for (const bool extraPage : {false, true}) {
        SheetOptions shape;
        shape.extraFirstPage = extraPage;
        HostedSheet host(NoPrinter(), shape);
        std::vector<int> visited;
        int start = -1;
        const int pages = extraPage ? 4 : 3;
        host.run.Add([&](SheetUser&) { start = host.sheet.CurrentPage(); });
        for (int press = 0; press < pages; ++press) {
            host.run.Add([](SheetUser& user) { user.PressCtrlTab(); });
            host.run.Add([&](SheetUser&) { visited.push_back(host.sheet.CurrentPage()); });
        }
        host.run.Add([](SheetUser& user) { user.PressCtrlTab(true); });
        host.run.Add([&](SheetUser&) {
            EXPECT_EQ(host.sheet.CurrentPage(), (start + pages - 1) % pages);
            for (int page = 0; page < pages; ++page)
                EXPECT_NE(host.sheet.PageWindow(page), nullptr) << page;
        });
        host.run.Show();
        std::vector<int> expected;
        for (int press = 1; press <= pages; ++press)
            expected.push_back((start + press) % pages);
        EXPECT_EQ(visited, expected);
    }
}

// The callback that refuses stands in for a plug-in whose validation failed.
TEST_F(SheetTest, ARefusedApplyKeepsTheSheetOpenAndStoresNothing) {
    HostedSheet host(NoPrinter());
    OEMCUIPCALLBACK own = nullptr;
    bool stayed = false;
    host.run.Add([](SheetUser& user) { user.ClickTab(0); });
    host.run.Add([&](SheetUser& user) {
        own = host.session.UIParam().OEMCUIPCallback;
        host.session.UIParam().OEMCUIPCallback = [](PCPSUICBPARAM param, POEMCUIPPARAM) -> LONG {
            return param->Reason == CPSUICB_REASON_APPLYNOW ? CPSUICB_ACTION_NO_APPLY_EXIT
                                                            : CPSUICB_ACTION_NONE;
        };
        host.session.Tree().Find("Orientation")->Sel = 1;
        user.Ok();
    });
    host.run.Add([&](SheetUser& user) {
        stayed = true;
        EXPECT_EQ(host.session.DevMode().Public()->dmOrientation, DMORIENT_PORTRAIT);
        host.session.UIParam().OEMCUIPCallback = own;
        user.Cancel();
    });
    EXPECT_EQ(host.run.Show(), CPSUI_CANCEL);
    EXPECT_TRUE(stayed);
    EXPECT_EQ(host.sheet.Refused(), 1);
    EXPECT_EQ(host.sheet.Applied(), 0);
}

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

TEST_F(SheetTest, BoxesAreNotedAndAnswered) {
    HostedSheet host(NoPrinter());
    int answer = 0;
    host.run.Add([&](SheetUser&) {
        host.run.AnswerNextBox(IDNO);
        answer = MessageBoxW(host.sheet.Window(), L"Really?", L"A question", MB_YESNO);
    });
    host.run.Show();
    EXPECT_EQ(answer, IDNO);
    ASSERT_EQ(host.run.Boxes().size(), 1u);
    EXPECT_EQ(host.run.Boxes()[0].caption, L"A question");
    EXPECT_EQ(host.run.Boxes()[0].text, L"Really?");
}

}  // namespace
