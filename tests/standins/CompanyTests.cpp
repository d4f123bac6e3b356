// The smaller stand-ins: what tests rely on when they use them.
#include <gtest/gtest.h>
#include <windows.h>
#include <winspool.h>

#include "core/SignalMapping.h"
#include "support/UniqueHandle.h"
#include "tests/support/Files.h"
#include "tests/support/ScratchRegistry.h"
#include "tools/standins/companions/Companions.h"
#include "tools/standins/helpcontrol/HelpRecords.h"
#include "tools/standins/printui/PrintUIRecords.h"
#include "tools/standins/spooler/SpoolerControl.h"

namespace kzp {
namespace {

using namespace standins;

bool MappingExists() {
    return static_cast<bool>(UniqueKernelHandle(OpenFileMappingW(FILE_MAP_READ, FALSE, kSignalMappingName)));
}

struct Search {
    DWORD process;
    bool found;
};

BOOL CALLBACK FindVisible(HWND window, LPARAM parameter) {
    auto& search = *reinterpret_cast<Search*>(parameter);
    DWORD owner = 0;
    GetWindowThreadProcessId(window, &owner);
    search.found = search.found || (owner == search.process && IsWindowVisible(window));
    return TRUE;
}

bool ShowsWindow(HANDLE process) {
    Search search{GetProcessId(process), false};
    EnumWindows(FindVisible, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

TEST(StandInCompanions, DoWhatTheyAreToldAndSayThatTheyWereStarted) {
    const test::TemporaryFolder folder;
    const std::wstring path = PlaceCompanion(folder.Path(), L"KzpWriterInteraction.exe", kShowsWindow);
    ASSERT_FALSE(path.empty());
    const struct {
        const wchar_t* told;  // null: by the file beside it
        bool window, mapping;
    } cases[] = {{nullptr, true, false}, {kHoldsMapping, false, true}, {kDoesNothing, false, false}};
    for (const auto& [told, window, mapping] : cases) {
        const UniqueKernelHandle process = StartCompanion(path, told);
        ASSERT_TRUE(process);
        ASSERT_TRUE(WaitReady(L"KzpWriterInteraction.exe"));
        EXPECT_EQ(window, ShowsWindow(process.Get()));
        EXPECT_EQ(mapping, MappingExists());
        EXPECT_TRUE(QuitAll());
        EXPECT_EQ(WAIT_OBJECT_0, WaitForSingleObject(process.Get(), 5000));
    }
    EXPECT_FALSE(MappingExists());
    const std::vector<std::wstring> starts = Starts(path);
    ASSERT_EQ(3u, starts.size());
    EXPECT_EQ(L"\"" + path + L"\"", starts[0]);
    EXPECT_EQ(L"\"" + path + L"\" mapping", starts[1]);
}

TEST(StandInHelpControl, RecordsCallsByItsOrdinal) {
    const test::ScratchRegistry registry;
    const UniqueModule control(LoadLibraryW(help::kDllName));
    ASSERT_TRUE(control);
    const FARPROC entry = GetProcAddress(control.Get(), MAKEINTRESOURCEA(15));
    ASSERT_NE(nullptr, entry);
    using HtmlHelpW = HWND(WINAPI*)(HWND, LPCWSTR, UINT, DWORD_PTR);
    const auto htmlHelp = reinterpret_cast<HtmlHelpW>(reinterpret_cast<void*>(entry));
    htmlHelp(nullptr, L"C:\\My Help\\kzp.chm::/topic.htm", 0, 0);
    htmlHelp(nullptr, nullptr, 18, 0);
    const std::vector<help::Call> calls = help::Calls();
    ASSERT_EQ(2u, calls.size());
    EXPECT_EQ(L"C:\\My Help\\kzp.chm::/topic.htm", calls[0].address);
    EXPECT_EQ(0u, calls[0].command);
    EXPECT_EQ(L"", calls[1].address);
    EXPECT_EQ(18u, calls[1].command);
    help::ForgetCalls();
    EXPECT_TRUE(help::Calls().empty());
}

TEST(StandInPrintUI, AddsAndRemovesWhatItsCommandLineNames) {
    const test::ScratchRegistry registry;
    const test::TemporaryFolder folder;
    const UniqueModule printUI(LoadLibraryW(L"printui.dll"));
    ASSERT_TRUE(printUI);
    using PrintUIEntryW = DWORD(WINAPI*)(HWND, HINSTANCE, LPCWSTR, int);
    const auto entry = reinterpret_cast<PrintUIEntryW>(
        reinterpret_cast<void*>(GetProcAddress(printUI.Get(), "PrintUIEntryW")));
    ASSERT_NE(nullptr, entry);
    const auto printerExists = [] {
        UniquePrinter printer;
        return OpenPrinterW(const_cast<wchar_t*>(L"My Printer"), printer.Put(), nullptr) != FALSE;
    };
    spooler::SetUpPrinter({.name = L"Other", .port = L"My Port"});

    const std::wstring install =
        L"/if /z /r \"My Port\" /b \"My Printer\" /m \"My Model\" /h \"Intel\" /v \"Windows 2000\" /f \"" +
        folder.File(L"my driver.inf") + L"\"";
    entry(nullptr, nullptr, install.c_str(), 0);
    EXPECT_FALSE(printerExists()) << "installed from an INF file that is missing";
    test::WriteFileText(folder.File(L"my driver.inf"), "[Version]\r\n");
    entry(nullptr, nullptr, install.c_str(), 0);
    EXPECT_TRUE(printerExists());

    const wchar_t* const removeDriver = L"/dd /m \"My Model\" /h \"Intel\" /v \"Windows 2000\" ";
    EXPECT_EQ(DWORD{ERROR_PRINTER_DRIVER_IN_USE}, entry(nullptr, nullptr, removeDriver, 0));
    entry(nullptr, nullptr, L"/dl /r \"My Port\" /n \"My Printer\" ", 0);
    EXPECT_FALSE(printerExists());
    EXPECT_EQ(DWORD{ERROR_SUCCESS}, entry(nullptr, nullptr, removeDriver, 0));

    const std::vector<std::wstring> commands = printui::Commands();
    ASSERT_EQ(5u, commands.size());
    EXPECT_EQ(install, commands[0]);
    EXPECT_EQ(removeDriver, commands[4]);
}

}  // namespace
}  // namespace kzp
