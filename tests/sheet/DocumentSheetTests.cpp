// DocumentPropertySheets: what the plug-in asks of the sheet function, and what it answers to each reason.
#include <gtest/gtest.h>

#include "resources/resource.h"
#include "tests/support/ScratchRegistry.h"
#include "tools/driverhost/PlugIn.h"

namespace kzp::test {
namespace {

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

TEST(DocumentSheet, GetsTheTwoPagesAndAnAnswerToEachReason) {
    PROPSHEETUI_INFO_HEADER header = {};
    SETRESULT_INFO result = {sizeof result, 0, nullptr, 2};
    constexpr DWORD kUntouched = 0xABCD;
    const struct {
        WORD version, reason;
        void* parameter;
        HRESULT answer;
        DWORD result;
    } cases[] = {
        {0x00FF, PROPSHEETUI_REASON_INIT, nullptr, E_FAIL, kUntouched},
        {0x0101, PROPSHEETUI_REASON_INIT, nullptr, E_FAIL, kUntouched},
        {PROPSHEETUI_INFO_VERSION, PROPSHEETUI_REASON_GET_INFO_HEADER, &header, S_OK, 1},
        {PROPSHEETUI_INFO_VERSION, PROPSHEETUI_REASON_SET_RESULT, &result, S_OK, 2},
        {PROPSHEETUI_INFO_VERSION, PROPSHEETUI_REASON_DESTROY, nullptr, S_OK, 1},
        {PROPSHEETUI_INFO_VERSION, PROPSHEETUI_REASON_GET_ICON, nullptr, S_OK, 0},
        {PROPSHEETUI_INFO_VERSION, PROPSHEETUI_REASON_INIT, nullptr, S_OK, 42},
    };
    const ScratchRegistry registry;
    const driverhost::PlugIn plugIn(driverhost::BesideProgram(L"KZPWriterUI.dll"));
    const auto object = plugIn.CreateObject();
    PROPSHEETUI_INFO info = {};
    info.cbSize = sizeof info;
    info.hComPropSheet = reinterpret_cast<HANDLE>(77);
    info.pfnComPropSheet = Recorder;
    for (const auto& expected : cases) {
        SCOPED_TRACE(&expected - cases);
        EXPECT_EQ(g_asked, "");
        info.Version = expected.version;
        info.Reason = expected.reason;
        info.Result = kUntouched;
        SetLastError(0);
        EXPECT_EQ(object->DocumentPropertySheets(&info, reinterpret_cast<LPARAM>(expected.parameter)),
                  expected.answer);
        EXPECT_EQ(info.Result, expected.result);
        EXPECT_EQ(GetLastError() == ERROR_INVALID_PARAMETER, FAILED(expected.answer));
    }
    EXPECT_EQ(g_asked, "page " + std::to_string(IDD_DOCUMENT_SETTINGS) + ", start with 101, page " +
                           std::to_string(IDD_OUTPUT_LOCATION) + ", ");
    EXPECT_STREQ(header.pTitle, L"KZPWRITER UI Page");
    SetLastError(0);
    EXPECT_EQ(object->DocumentPropertySheets(nullptr, 0), E_FAIL);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_PARAMETER});
}

}  // namespace
}  // namespace kzp::test
