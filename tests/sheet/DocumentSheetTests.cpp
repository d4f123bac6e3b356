// DocumentPropertySheets: what the plug-in asks of the sheet function, and what it answers to each reason.
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "resources/resource.h"
#include "tests/support/HostedSheet.h"
#include "tests/support/ScratchRegistry.h"

namespace {

using namespace driverhost;
using kzp::test::HostedSheet;
using kzp::test::NoPrinter;

// A sheet function that writes down what it is asked for; handles are 101, 102, ...
struct Asked {
    UINT function;
    LPARAM first;
};
std::vector<Asked> g_asked;
LONG_PTR g_startAnswer = 1;
WORD g_dialogs[4] = {};

LONG_PTR CALLBACK Recorder(HANDLE sheet, UINT function, LPARAM first, LPARAM) {
    EXPECT_EQ(sheet, reinterpret_cast<HANDLE>(77));
    g_asked.push_back({function, first});
    if (function != CPSFUNC_ADD_PROPSHEETPAGEW)
        return g_startAnswer;
    const auto& page = *reinterpret_cast<const PROPSHEETPAGEW*>(first);
    EXPECT_EQ(page.dwSize, sizeof page);
    EXPECT_EQ(page.dwFlags, 0u);
    const size_t added =
        static_cast<size_t>(std::count_if(g_asked.begin(), g_asked.end(), [](const Asked& call) {
            return call.function == CPSFUNC_ADD_PROPSHEETPAGEW;
        }));
    g_dialogs[added] = LOWORD(reinterpret_cast<ULONG_PTR>(page.pszTemplate));
    return static_cast<LONG_PTR>(100 + added);
}

class DocumentSheetTest : public testing::Test {
  protected:
    DocumentSheetTest() {
        g_asked.clear();
        g_startAnswer = 1;
        info.cbSize = sizeof info;
        info.Version = PROPSHEETUI_INFO_VERSION;
        info.hComPropSheet = reinterpret_cast<HANDLE>(77);
        info.pfnComPropSheet = Recorder;
    }

    HRESULT Tell(WORD reason, LPARAM lParam = 0) {
        info.Reason = reason;
        info.Result = 0xABCD;
        SetLastError(0);
        return object->DocumentPropertySheets(&info, lParam);
    }

    kzp::test::ScratchRegistry registry;
    PlugIn plugIn{BesideProgram(L"KZPWriterUI.dll")};
    ComRef<IPrintOemUI2> object = plugIn.CreateObject();
    PROPSHEETUI_INFO info = {};
};

TEST_F(DocumentSheetTest, AddsTheSettingsPageAsStartPageThenTheOutputPage) {
    g_startAnswer = 42;
    EXPECT_EQ(Tell(PROPSHEETUI_REASON_INIT), S_OK);
    EXPECT_EQ(info.Result, 42u);
    ASSERT_EQ(g_asked.size(), 3u);
    EXPECT_EQ(g_asked[0].function, UINT{CPSFUNC_ADD_PROPSHEETPAGEW});
    EXPECT_EQ(g_dialogs[1], IDD_DOCUMENT_SETTINGS);
    EXPECT_EQ(g_asked[1].function, UINT{CPSFUNC_SET_HSTARTPAGE});
    EXPECT_EQ(g_asked[1].first, 101);
    EXPECT_EQ(g_asked[2].function, UINT{CPSFUNC_ADD_PROPSHEETPAGEW});
    EXPECT_EQ(g_dialogs[2], IDD_OUTPUT_LOCATION);
}

TEST_F(DocumentSheetTest, AnswersTheOtherReasons) {
    PROPSHEETUI_INFO_HEADER header = {};
    header.cbSize = sizeof header;
    EXPECT_EQ(Tell(PROPSHEETUI_REASON_GET_INFO_HEADER, reinterpret_cast<LPARAM>(&header)), S_OK);
    EXPECT_EQ(info.Result, 1u);
    EXPECT_STREQ(header.pTitle, L"KZPWRITER UI Page");

    SETRESULT_INFO result = {sizeof result, 0, nullptr, 2};
    EXPECT_EQ(Tell(PROPSHEETUI_REASON_SET_RESULT, reinterpret_cast<LPARAM>(&result)), S_OK);
    EXPECT_EQ(info.Result, 2u);

    EXPECT_EQ(Tell(PROPSHEETUI_REASON_DESTROY), S_OK);
    EXPECT_EQ(info.Result, 1u);
    EXPECT_EQ(Tell(PROPSHEETUI_REASON_GET_ICON), S_OK);
    EXPECT_EQ(info.Result, 0u);
    EXPECT_TRUE(g_asked.empty());
}

TEST_F(DocumentSheetTest, RefusesAMissingInfoAndEveryOtherVersion) {
    SetLastError(0);
    EXPECT_EQ(object->DocumentPropertySheets(nullptr, 0), E_FAIL);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_PARAMETER});
    for (const WORD version : std::initializer_list<WORD>{0, 0x00FF, 0x0101, 0x0200}) {
        info.Version = version;
        EXPECT_EQ(Tell(PROPSHEETUI_REASON_INIT), E_FAIL) << version;
        EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_PARAMETER});
        EXPECT_EQ(info.Result, 0xABCDu) << "a refused block is left alone";
    }
    EXPECT_TRUE(g_asked.empty());
}

// In a real sheet: every page is visited once and the sheet comes to rest where it started.
TEST(DocumentSheetJourneyTest, VisitsEveryPageAndRestsWhereItStarted) {
    const kzp::test::ScratchRegistry registry;
    for (const bool extraPage : {false, true}) {
        SheetOptions shape;
        shape.extraFirstPage = extraPage;
        HostedSheet host(NoPrinter(), shape);
        const int own = extraPage ? 2 : 1;
        host.run.Add([&](SheetUser& user) {
            wchar_t title[99] = {};
            GetWindowTextW(host.sheet.Window(), title, 99);
            EXPECT_STREQ(title, L"No such printer Document Properties") << "the driver's own";
            EXPECT_EQ(host.sheet.StartPage(), own);
            EXPECT_EQ(host.sheet.CurrentPage(), own);
            for (int page = 0; page < host.sheet.PageCount(); ++page)
                EXPECT_NE(host.sheet.PageWindow(page), nullptr) << page;
            user.Ok();
        });
        EXPECT_EQ(host.run.Show(), CPSUI_OK);
        EXPECT_EQ(host.sheet.Applied(), 1);
        EXPECT_EQ(host.sheet.SetResults(), std::vector<ULONG_PTR>{CPSUI_OK});
    }
}

}  // namespace
