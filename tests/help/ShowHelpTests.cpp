// What the Help buttons do, seen by a stand-in registered as the platform's help control.
#include <optional>

#include "help/Help.h"
#include "resources/resource.h"
#include "tests/support/Files.h"
#include "tests/support/SheetTest.h"
#include "tests/support/SystemFolder.h"
#include "tools/standins/helpcontrol/HelpRecords.h"

namespace kzp::test {
namespace {

using namespace kzp::standins::help;
using Requests = std::vector<std::wstring>;

struct ShowingHelp : SheetTest {
    ShowingHelp() { ForgetCalls(); }

    // The plug-in as a program has it that did not ask for help yet.
    void LoadAfresh() {
        plugIn.reset();
        plugIn.emplace(driverhost::BesideProgram(L"KZPWriterUI.dll"));
    }

    // Presses Help in the dialog that the plug-in puts into the driver's page.
    Requests Press() {
        driverhost::DocumentSession session(*plugIn, {});
        session.PresentItems();
        const HWND sheet = CreateWindowExW(0, L"STATIC", L"", WS_OVERLAPPED, 0, 0, 480, 420, nullptr, nullptr,
                                           nullptr, nullptr);
        const HWND page =
            CreateWindowExW(0, L"STATIC", L"", WS_CHILD, 0, 0, 460, 400, sheet, nullptr, nullptr, nullptr);
        session.TellCallback(CPSUICB_REASON_SETACTIVE, page);
        ForgetCalls();
        SendMessageW(FindWindowExW(page, nullptr, L"#32770", nullptr), WM_COMMAND, IDC_HELP_ADVANCED, 0);
        DestroyWindow(sheet);
        return Calls();
    }

    std::optional<driverhost::PlugIn> plugIn;
};

const Requests kWithoutPath = {L"command 0 ::/kzp-writer-2d.htm"};

TEST_F(ShowingHelp, IsWhatTheButtonOfEachDialogDoes) {
    const RegisteredControl control(BesideExe(kDllName));
    WriteText(HKEY_LOCAL_MACHINE, kProductKey, L"HelpFilePath", L"C:\\KZP\\writer.chm");
    HostedSheet host;
    for (const auto& [tab, button] :
         {std::pair{1, IDC_HELP_SETTINGS}, {2, IDC_HELP_OUTPUT}, {0, IDC_HELP_ADVANCED}}) {
        host.run.Add([tab](driverhost::SheetUser& user) { user.ClickTab(tab); });
        host.run.Add([button](driverhost::SheetUser& user) {
            ForgetCalls();
            user.Click(button);
            EXPECT_EQ((Requests{L"command 0 C:\\KZP\\writer.chm::/kzp-writer-2d.htm"}), Calls()) << button;
        });
    }
    host.run.Show();
}

TEST_F(ShowingHelp, OpensTheInstalledFileAtTheProductsTopic) {
    const RegisteredControl control(BesideExe(kDllName));
    LoadAfresh();
    const std::wstring longest(127, L'x');
    WriteText(HKEY_LOCAL_MACHINE, kProductKey, L"HelpFilePath", longest);
    EXPECT_EQ((Requests{L"command 0 " + longest + L"::/kzp-writer-2d.htm"}), Press());
    WriteText(HKEY_LOCAL_MACHINE, kProductKey, L"HelpFilePath", longest + L'x');
    EXPECT_EQ(kWithoutPath, Press()) << "longer paths are not read";
    const std::wstring full(128, L'y');
    WriteValue(HKEY_LOCAL_MACHINE, kProductKey, L"HelpFilePath", REG_BINARY, full.data(), 256);
    EXPECT_EQ((Requests{L"command 0 " + full + L"::/kzp-writer-2d.htm"}), Press()) << "without a terminator";
    RegDeleteTreeW(HKEY_LOCAL_MACHINE, kProductKey);
    EXPECT_EQ(kWithoutPath, Press()) << "no key, no path";
}

TEST_F(ShowingHelp, TakesTheRegisteredControlOrTheOneInTheSystemsFolder) {
    const std::wstring control = BesideExe(kDllName), other = BesideExe(L"KZPPortMonitor.dll");
    const TemporaryFolder folders;
    const std::wstring longest = folders.Deep(250) + L"\\help.dll";  // as long as paths may be
    CopyFileW(control.c_str(), longest.c_str(), TRUE);
    ASSERT_TRUE(FileExists(longest));
    const auto Below = [](const wchar_t* variable, const std::wstring& path) {
        const size_t name = path.rfind(L'\\');
        SetEnvironmentVariableW(variable, path.substr(0, name).c_str());
        return std::wstring(L"%") + variable + L"%" + path.substr(name);
    };
    const std::wstring below = Below(L"KZP_HELP", control), longestBelow = Below(L"KZP_LONGEST", longest);
    const struct {
        std::wstring registered;
        DWORD type;
        std::wstring system;  // what the system's folder holds
        bool found;
    } cases[] = {
        {control, REG_SZ, other, true},
        {longest, REG_SZ, other, true},
        {below, REG_EXPAND_SZ, other, true},
        {longestBelow, REG_EXPAND_SZ, other, true},
        {L"%KZP_LONGEST%\\.\\help.dll", REG_EXPAND_SZ, other, false},
        {below, REG_SZ, other, false},
        {control, REG_BINARY, other, false},
        {control, REG_MULTI_SZ, other, false},
        {L"C:\\Nowhere\\gone.dll", REG_SZ, control, true},
        {other, REG_SZ, control, false},  // it loads, but is no help control
    };
    for (const auto& expected : cases) {
        SCOPED_TRACE(testing::PrintToString(expected.registered) + ' ' + std::to_string(expected.type));
        LoadAfresh();
        const SystemFolder system(plugIn->Module(), {{L"hhctrl.ocx", expected.system}});
        {
            const RegisteredControl registered(expected.registered, expected.type);
            EXPECT_EQ(expected.found ? kWithoutPath : Requests(), Press());
        }
        const RegisteredControl registered(expected.found ? L"" : control);
        EXPECT_EQ(expected.found ? kWithoutPath : Requests(), Press()) << "looked for once";
    }
}

}  // namespace
}  // namespace kzp::test
