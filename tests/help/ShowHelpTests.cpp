// What the Help buttons do, seen by a stand-in registered as the platform's help control.
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

using ShowingHelp = SheetTest;

// Presses the button; answers the calls that the control received.
Requests Press(driverhost::SheetUser& user, int button) {
    calls.Start();
    user.Click(button);
    return calls.Read();
}

TEST_F(ShowingHelp, OfEachDialogOpensTheInstalledFileAtTheProductsTopic) {
    const RegisteredControl control(BesideExe(kDllName));
    HostedSheet host;
    const std::wstring path(128, L'x');
    const struct {
        int tab, button;
        DWORD type;
        size_t bytes;
        std::wstring read;
    } cases[] = {
        {1, IDC_HELP_SETTINGS, REG_SZ, 16, path.substr(0, 8)},
        {2, IDC_HELP_OUTPUT, REG_BINARY, 256, path},  // without a terminator
        {0, IDC_HELP_ADVANCED, REG_SZ, 258, L""},     // longer than is read
    };
    for (const auto& expected : cases) {
        host.run.Add([&](driverhost::SheetUser& user) { user.ClickTab(expected.tab); });
        host.run.Add([&](driverhost::SheetUser& user) {
            WriteValue(HKEY_LOCAL_MACHINE, kProductKey, L"HelpFilePath", expected.type, path.c_str(),
                       expected.bytes);
            EXPECT_EQ((Requests{L"command 0 " + expected.read + L"::/kzp-writer-2d.htm"}),
                      Press(user, expected.button));
        });
    }
    host.run.Show();
}

TEST_F(ShowingHelp, TakesTheRegisteredControlOrTheOneInTheSystemsFolder) {
    const std::wstring control = BesideExe(kDllName), other = BesideExe(L"KZPPortMonitor.dll");
    SetEnvironmentVariableW(L"KZP_HELP", BesideExe(L"").c_str());
    const std::wstring below = std::wstring(L"%KZP_HELP%") + kDllName;
    const struct {
        std::wstring registered, system;  // what the system's folder holds
        DWORD type;
        bool found;
    } cases[] = {
        {below, other, REG_EXPAND_SZ, true}, {below, other, REG_SZ, false},
        {control, other, REG_BINARY, false}, {L"C:\\Nowhere\\gone.dll", control, REG_SZ, true},
        {other, control, REG_SZ, false},  // it loads, but is no help control
    };
    for (const auto& expected : cases) {
        SCOPED_TRACE(&expected - cases);
        const RegisteredControl registered(expected.registered, expected.type);
        HostedSheet host;
        const SystemFolder system(host.plugIn.Module(), {{L"hhctrl.ocx", expected.system}});
        host.run.Add([&](driverhost::SheetUser& user) {
            const Requests opened = {L"command 0 ::/kzp-writer-2d.htm"};
            EXPECT_EQ(expected.found ? opened : Requests(), Press(user, IDC_HELP_SETTINGS));
        });
        host.run.Show();
    }
}

}  // namespace
}  // namespace kzp::test
