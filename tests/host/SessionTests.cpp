// How the host calls the plug-in before a sheet is shown, and what it writes down of the calls it gets.
#include <gtest/gtest.h>

#include "tests/support/HostedSheet.h"

namespace {

using namespace driverhost;
using kzp::test::NoPrinter;

class SessionTest : public testing::Test {
  protected:
    PlugIn plugIn{BesideProgram(L"KZPWriterUI.dll")};
};

TEST_F(SessionTest, AsksForTheItemsTwiceFirstWithoutArrays) {
    DocumentSession session(plugIn, NoPrinter());
    session.PresentItems();
    ASSERT_EQ(session.CommonUIPropCalls().size(), 2u);
    EXPECT_FALSE(session.CommonUIPropCalls()[0].withItems);
    EXPECT_EQ(session.CommonUIPropCalls()[0].plugInItems, 0u);
    EXPECT_TRUE(session.CommonUIPropCalls()[1].withItems);
    for (const CommonUIPropCall& call : session.CommonUIPropCalls())
        EXPECT_EQ(call.result, S_OK);
}

TEST_F(SessionTest, RunsTheFourDevModeOperations) {
    DocumentSession session(plugIn, NoPrinter());
    std::vector<DWORD> modes;
    for (const DevModeCall& call : session.DevMode().Calls()) {
        modes.push_back(call.mode);
        EXPECT_EQ(call.result, S_OK);
    }
    EXPECT_EQ(modes, (std::vector<DWORD>{OEMDM_SIZE, OEMDM_DEFAULT, OEMDM_DEFAULT, OEMDM_MERGE}));

    // A stored device mode is converted; one that ends too early is not handed on.
    std::vector<BYTE> stored = session.DevMode().Bytes();
    const auto opens = [&](const std::vector<BYTE>& bytes) {
        const DevModeBlock block(session.Object(), plugIn.Module(), nullptr, L"any", bytes);
        return block.Calls()[2].mode == OEMDM_CONVERT;
    };
    EXPECT_TRUE(opens(stored));
    stored.pop_back();
    EXPECT_FALSE(opens(stored));
    EXPECT_FALSE(opens(std::vector<BYTE>(sizeof(DEVMODEW))));
}

TEST_F(SessionTest, WritesDownAnnouncements) {
    DocumentSession session(plugIn, NoPrinter());
    DriverHelper& helper = session.Helper();
    OPTITEM* const unit = session.Tree().Find("CustomUnit");
    unit->Sel = 1;
    EXPECT_EQ(helper.DrvUpdateUISetting(session.UIParam().poemuiobj, unit, 0, OEMCUIP_DOCPROP), S_OK);
    EXPECT_EQ(helper.DrvUpdateUISetting(session.UIParam().poemuiobj, session.PlugInTree().Items(), 0, 1),
              S_OK);
    OPTITEM foreign = {};
    EXPECT_EQ(helper.DrvUpdateUISetting(session.UIParam().poemuiobj, &foreign, 0, 1), E_INVALIDARG);
    EXPECT_EQ(helper.DrvUpdateUISetting(nullptr, unit, 0, 1), E_INVALIDARG);
    const auto& calls = helper.Announcements();
    ASSERT_EQ(calls.size(), 4u);
    EXPECT_EQ(calls[0].keyword, "CustomUnit");
    EXPECT_EQ(calls[0].selection, 1);
    EXPECT_FALSE(calls[0].plugInItem);
    EXPECT_TRUE(calls[1].plugInItem);
    EXPECT_EQ(calls[1].position, 0);
    EXPECT_EQ(calls[2].position, -1);
    EXPECT_FALSE(calls[3].rightSheet);
}

}  // namespace
