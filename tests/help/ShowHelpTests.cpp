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
    ShowingHelp() { calls.Start(); }

    // The plug-in as a program has it that did not ask for help yet.
    void LoadAfresh() {
        plugIn.reset();
        plugIn.emplace(BesideExe(L"KZPWriterUI.dll"));
    }

    // Presses Help in the dialog that the plug-in puts into the driver's page.
    Requests Press() {
        driverhost::DocumentSession session(*plugIn, {});
        session.PresentItems();
        const HWND page = CreateWindowExW(0, L"STATIC", L"", WS_OVERLAPPED, 0, 0, 460, 400, nullptr, nullptr,
                                          nullptr, nullptr);
        session.TellCallback(CPSUICB_REASON_SETACTIVE, page);
        calls.Start();
        SendMessageW(FindWindowExW(page, nullptr, L"#32770", nullptr), WM_COMMAND, IDC_HELP_ADVANCED, 0);
        DestroyWindow(page);
        return calls.Read();
    }

    std::optional<driverhost::PlugIn> plugIn;
};

const Requests kWithoutPath = {L"command 0 ::/kzp-writer-2d.htm"};

TEST_F(ShowingHelp, IsWhatTheButtonOfEachDialogDoes) {
    const RegisteredControl control(BesideExe(kDllName));
    WriteText(HKEY_LOCAL_MACHINE, kProductKey, L"HelpFilePath", L"C:\\KZP\\writer.chm");
    HostedSheet host;
    const std::pair<int, int> buttons[] = {
        {1, IDC_HELP_SETTINGS}, {2, IDC_HELP_OUTPUT}, {0, IDC_HELP_ADVANCED}};
    for (const auto& place : buttons) {
        const int tab = place.first, button = place.second;  // clang 14 captures no structured binding
        host.run.Add([tab](driverhost::SheetUser& user) { user.ClickTab(tab); });
        host.run.Add([button](driverhost::SheetUser& user) {
            calls.Start();
            user.Click(button);
            EXPECT_EQ((Requests{L"command 0 C:\\KZP\\writer.chm::/kzp-writer-2d.htm"}), calls.Read())
                << button;
        });
    }
    host.run.Show();
}

TEST_F(ShowingHelp, OpensTheInstalledFileAtTheProductsTopic) {
    const RegisteredControl control(BesideExe(kDllName));
    LoadAfresh();
    EXPECT_EQ(kWithoutPath, Press()) << "no key, no path";
    const struct {
        std::wstring path;
        DWORD type;
        size_t bytes;
        bool isRead;
    } cases[] = {
        {std::wstring(127, L'x'), REG_SZ, 256, true},
        {std::wstring(128, L'x'), REG_SZ, 258, false},     // longer paths are not read
        {std::wstring(128, L'y'), REG_BINARY, 256, true},  // without a terminator
    };
    for (const auto& [path, type, bytes, isRead] : cases) {
        WriteValue(HKEY_LOCAL_MACHINE, kProductKey, L"HelpFilePath", type, path.c_str(), bytes);
        EXPECT_EQ((Requests{L"command 0 " + (isRead ? path : L"") + L"::/kzp-writer-2d.htm"}), Press());
    }
}

TEST_F(ShowingHelp, TakesTheRegisteredControlOrTheOneInTheSystemsFolder) {
    const std::wstring control = BesideExe(kDllName), other = BesideExe(L"KZPPortMonitor.dll");
    const TemporaryFolder folders;
    const std::wstring deep = folders.Deep(250), longest = deep + L"\\help.dll";  // as long as paths may be
    ASSERT_TRUE(CopyFileW(control.c_str(), longest.c_str(), TRUE));
    SetEnvironmentVariableW(L"KZP_HELP", BesideExe(L"").c_str());
    SetEnvironmentVariableW(L"KZP_LONGEST", deep.c_str());
    const std::wstring below = std::wstring(L"%KZP_HELP%") + kDllName;
    const struct {
        std::wstring registered;
        DWORD type;
        std::wstring system;  // what the system's folder holds
        bool found;
    } cases[] = {
        {control, REG_SZ, other, true},
        {longest, REG_SZ, other, true},
        {below, REG_EXPAND_SZ, other, true},
        {L"%KZP_LONGEST%\\help.dll", REG_EXPAND_SZ, other, true},
        {L"%KZP_LONGEST%\\.\\help.dll", REG_EXPAND_SZ, other, false},
        {below, REG_SZ, other, false},
        {control, REG_BINARY, other, false},
        {control, REG_MULTI_SZ, other, false},
        {L"C:\\Nowhere\\gone.dll", REG_SZ, control, true},
        {other, REG_SZ, control, false},  // it loads, but is no help control
    };
    for (const auto& [path, type, inSystem, found] : cases) {
        SCOPED_TRACE(testing::PrintToString(path) + ' ' + std::to_string(type));
        LoadAfresh();
        const SystemFolder system(plugIn->Module(), {{L"hhctrl.ocx", inSystem}});
        {
            const RegisteredControl registered(path, type);
            EXPECT_EQ(found ? kWithoutPath : Requests(), Press());
        }
        const RegisteredControl registered(found ? L"" : control);
        EXPECT_EQ(found ? kWithoutPath : Requests(), Press()) << "looked for once";
    }
}

}  // namespace
}  // namespace kzp::test
