// What the Help buttons do, seen by a stand-in registered as the platform's help control.
#include <gtest/gtest.h>
#include <windows.h>

#include <objbase.h>

#include <string>

#include "help/Help.h"
#include "help/HtmlHelp.h"
#include "tests/support/Files.h"
#include "tests/support/ScratchRegistry.h"
#include "tests/support/SystemFolder.h"
#include "tools/standins/helpcontrol/HelpRecords.h"

namespace kzp::test {
namespace {

using namespace kzp::standins::help;

struct ShowingHelp : testing::Test {
    ShowingHelp() {
        ForgetCalls();
        g_helpControl = {};
    }
    ~ShowingHelp() override { g_helpControl = {}; }

    std::wstring AddressAfter(const std::wstring& storedPath) {
        WriteText(HKEY_LOCAL_MACHINE, kProductKey, L"HelpFilePath", storedPath);
        ForgetCalls();
        ShowHelp();
        const auto calls = Calls();
        EXPECT_EQ(1u, calls.size());
        if (calls.empty())
            return {};
        EXPECT_EQ(0u, calls[0].command) << "HH_DISPLAY_TOPIC";
        return calls[0].address;
    }

    ScratchRegistry registry;
};

TEST_F(ShowingHelp, OpensTheInstalledFileAtTheProductsTopic) {
    const RegisteredControl control(BesideExe(kDllName));
    EXPECT_EQ(L"C:\\KZP\\writer.chm::/kzp-writer-2d.htm", AddressAfter(L"C:\\KZP\\writer.chm"));
    const std::wstring longest(127, L'x');
    EXPECT_EQ(longest + L"::/kzp-writer-2d.htm", AddressAfter(longest));
    EXPECT_EQ(L"::/kzp-writer-2d.htm", AddressAfter(std::wstring(128, L'x'))) << "longer paths are not read";

    RegDeleteTreeW(HKEY_LOCAL_MACHINE, kProductKey);
    ForgetCalls();
    ShowHelp();
    ASSERT_EQ(1u, Calls().size());
    EXPECT_EQ(L"::/kzp-writer-2d.htm", Calls()[0].address) << "no key, no path";
}

TEST_F(ShowingHelp, NamesATopicThatThePlatformReadsFromTheDeliveredFile) {
    const RegisteredControl control(BesideExe(kDllName));
    const TemporaryFolder folder;
    std::wstring name = L"@MSITStore:" + AddressAfter(folder.Take(L"kzpwriter.chm"));
    CLSID parserClass = {};
    IParseDisplayName* parser = nullptr;
    IMoniker* moniker = nullptr;
    IStream* topic = nullptr;
    ULONG eaten = 0;
    ASSERT_HRESULT_SUCCEEDED(CoInitialize(nullptr));
    ASSERT_HRESULT_SUCCEEDED(CLSIDFromProgID(L"MSITStore", &parserClass));
    ASSERT_HRESULT_SUCCEEDED(CoCreateInstance(parserClass, nullptr, CLSCTX_INPROC_SERVER,
                                              IID_IParseDisplayName, reinterpret_cast<void**>(&parser)));
    ASSERT_HRESULT_SUCCEEDED(parser->ParseDisplayName(nullptr, name.data(), &eaten, &moniker));
    ASSERT_HRESULT_SUCCEEDED(
        moniker->BindToStorage(nullptr, nullptr, IID_IStream, reinterpret_cast<void**>(&topic)));
    char text[1024] = {};
    EXPECT_HRESULT_SUCCEEDED(topic->Read(text, sizeof(text) - 1, nullptr));
    EXPECT_NE(nullptr, strstr(text, "<title>Brimlake KZP Writer</title>")) << text;
    for (IUnknown* const object : std::initializer_list<IUnknown*>{topic, moniker, parser})
        object->Release();
    CoUninitialize();
}

TEST_F(ShowingHelp, TakesAPathWithoutTerminatorWithinItsBuffer) {
    const RegisteredControl control(BesideExe(kDllName));
    const std::wstring full(128, L'y');
    WriteValue(HKEY_LOCAL_MACHINE, kProductKey, L"HelpFilePath", REG_BINARY, full.data(), 256);
    ShowHelp();
    ASSERT_EQ(1u, Calls().size());
    EXPECT_EQ(full + L"::/kzp-writer-2d.htm", Calls()[0].address);
}

TEST_F(ShowingHelp, ExpandsTheControlsRegisteredPath) {
    const std::wstring path = BesideExe(kDllName);
    SetEnvironmentVariableW(L"KZP_HELP_FOLDER", path.substr(0, path.rfind(L'\\')).c_str());
    const RegisteredControl control(std::wstring(L"%KZP_HELP_FOLDER%\\") + kDllName, REG_EXPAND_SZ);
    EXPECT_EQ(L"a.chm::/kzp-writer-2d.htm", AddressAfter(L"a.chm"));
}

TEST_F(ShowingHelp, FallsBackToTheControlInTheSystemsFolder) {
    const RegisteredControl gone(L"C:\\Nowhere\\gone.dll");
    const SystemFolder system(GetModuleHandleW(nullptr), {{L"hhctrl.ocx", BesideExe(kDllName)}});
    EXPECT_EQ(L"a.chm::/kzp-writer-2d.htm", AddressAfter(L"a.chm"));
}

TEST_F(ShowingHelp, WithoutAUsableControlIsSilentAndRemembersIt) {
    {
        // A library that loads but is no help control.
        const RegisteredControl none(BesideExe(L"KZPPortMonitor.dll"));
        EXPECT_EQ(nullptr, HtmlHelpW(nullptr, L"a.chm", HH_DISPLAY_TOPIC, 0));
    }
    const RegisteredControl control(BesideExe(kDllName));
    EXPECT_EQ(nullptr, HtmlHelpW(nullptr, L"a.chm", HH_DISPLAY_TOPIC, 0)) << "looked for once";
    EXPECT_TRUE(Calls().empty());
}

}  // namespace
}  // namespace kzp::test
