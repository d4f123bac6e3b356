// How the host calls the plug-in before a sheet is shown, and what it writes down of the calls it gets.
#include <gtest/gtest.h>

#include "tests/support/Guarded.h"
#include "tests/support/HostedSheet.h"

namespace {

using namespace driverhost;
using kzp::test::NoPrinter;

class SessionTest : public testing::Test {
  protected:
    PlugIn plugIn{BesideProgram(L"KZPWriterUI.dll")};
};

// Every entry point has an object of its own, and the DLL may go in between: the session is the first to keep
// it.
TEST_F(SessionTest, CallsAsTheContractSays) {
    const HMODULE before = GetModuleHandleW(L"KZPWriterUI.dll");
    DocumentSession session(plugIn, NoPrinter());
    EXPECT_EQ(nullptr, before);
    EXPECT_NE(nullptr, GetModuleHandleW(L"KZPWriterUI.dll"));
    session.PresentItems();
    ASSERT_EQ(session.CommonUIPropCalls().size(), 2u);
    for (const CommonUIPropCall& call : session.CommonUIPropCalls()) {
        EXPECT_EQ(call.result, S_OK);
        EXPECT_EQ(call.plugInItems, 0u);
    }

    const auto modes = [](const DevModeBlock& block) {
        std::vector<DWORD> called;
        for (const DevModeCall& call : block.Calls()) {
            called.push_back(call.mode);
            EXPECT_EQ(call.result, S_OK);
        }
        return called;
    };
    EXPECT_EQ(modes(session.DevMode()), (std::vector<DWORD>{OEMDM_DEFAULT, OEMDM_DEFAULT, OEMDM_MERGE}));
    EXPECT_EQ(reinterpret_cast<ULONG_PTR>(session.UIParam().pOEMDM) % 2, 1u) << "at any address";
    // A stored device mode is converted; one that ends too early is not handed on.
    std::vector<BYTE> stored = session.DevMode().Bytes();
    const auto converts = [&](const std::vector<BYTE>& bytes) {
        return modes(DevModeBlock(session.Object(), session.DevMode().PlugInBytes(), plugIn.Module(), nullptr,
                                  L"any", bytes))[1] == OEMDM_CONVERT;
    };
    EXPECT_TRUE(converts(stored));
    stored.pop_back();
    EXPECT_FALSE(converts(stored));
    EXPECT_FALSE(converts(std::vector<BYTE>(sizeof(DEVMODEW))));
}

TEST_F(SessionTest, LeavesNothingToTouchBehind) {
    const OEMCUIPPARAM* param = nullptr;
    const OPTITEM* items = nullptr;
    const BYTE* record = nullptr;
    {
        DocumentSession session(plugIn, NoPrinter());
        session.PresentItems();
        param = &session.UIParam();
        items = param->pDrvOptItems;
        record = static_cast<const BYTE*>(param->pOEMDM);
    }
    const auto faults = [](const auto* gone) {
        return kzp::test::RunGuarded([&] { (void)*reinterpret_cast<const volatile BYTE*>(gone); }).code;
    };
    EXPECT_EQ(faults(param), EXCEPTION_ACCESS_VIOLATION);
    EXPECT_EQ(faults(items), EXCEPTION_ACCESS_VIOLATION);
    EXPECT_EQ(faults(record), EXCEPTION_ACCESS_VIOLATION);
}

TEST_F(SessionTest, ShowsPrinterPropertiesBesideADocument) {
    kzp::test::HostedSheet document(NoPrinter());
    std::vector<int> pages;
    document.run.Add([&](SheetUser&) {
        SessionOptions options = NoPrinter();
        options.mode = OEMCUIP_PRNPROP;
        kzp::test::HostedSheet printer(std::move(options));
        printer.run.Add([&](SheetUser& user) {
            pages = {document.sheet.PageCount(), printer.sheet.PageCount()};
            EXPECT_EQ(printer.session.UIParam().OEMCUIPCallback, nullptr)
                << "documents alone are its business";
            user.Ok();
        });
        EXPECT_EQ(printer.run.Show(), CPSUI_OK);
    });
    EXPECT_EQ(document.run.Show(), CPSUI_CANCEL);
    EXPECT_EQ(pages, (std::vector<int>{3, 1}));
}

TEST_F(SessionTest, WritesDownAnnouncements) {
    SessionOptions options = NoPrinter();
    options.plugInItem = true;
    DocumentSession session(plugIn, std::move(options));
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
