// DocumentPropertySheets: what the plug-in asks of the sheet function, and what it answers to each reason.
#include <gtest/gtest.h>

#include <string>

#include "resources/resource.h"
#include "tests/support/ScratchRegistry.h"
#include "tools/driverhost/PlugIn.h"

namespace {

using namespace driverhost;

// A sheet function that writes down what it is asked for; handles are 101, 102, ...
std::string g_asked;
LONG_PTR g_lastHandle = 100;

LONG_PTR CALLBACK Recorder(HANDLE sheet, UINT function, LPARAM first, LPARAM) {
    EXPECT_EQ(sheet, reinterpret_cast<HANDLE>(77));
    if (function == CPSFUNC_SET_HSTARTPAGE) {
        g_asked += "start with " + std::to_string(first) + ", ";
        return 42;
    }
    EXPECT_EQ(function, UINT{CPSFUNC_ADD_PROPSHEETPAGEW});
    const auto& page = *reinterpret_cast<const PROPSHEETPAGEW*>(first);
    EXPECT_EQ(page.dwSize, sizeof page);
    EXPECT_EQ(page.dwFlags, 0u);
    g_asked += "page " + std::to_string(LOWORD(reinterpret_cast<ULONG_PTR>(page.pszTemplate))) + ", ";
    return ++g_lastHandle;
}

class DocumentSheetTest : public testing::Test {
  protected:
    DocumentSheetTest() {
        g_asked.clear();
        g_lastHandle = 100;
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
    EXPECT_EQ(Tell(PROPSHEETUI_REASON_INIT), S_OK);
    EXPECT_EQ(info.Result, 42u);
    EXPECT_EQ(g_asked, "page " + std::to_string(IDD_DOCUMENT_SETTINGS) + ", start with 101, page " +
                           std::to_string(IDD_OUTPUT_LOCATION) + ", ");
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

}  // namespace
