#include "tools/stress/Stage.h"

#include <commctrl.h>
#include <shellapi.h>
#include <shlobj.h>

#include <cstring>
#include <iterator>
#include <sstream>

#include "resources/resource.h"

namespace kzp::stress {

using driverhost::HostError;
using driverhost::SheetUser;

namespace {

HWND WINAPI OpenNoHelp(HWND, LPCWSTR, UINT, DWORD_PTR) {
    return nullptr;
}

BOOL WINAPI StartNothing(SHELLEXECUTEINFOW* start) {
    start->hProcess = nullptr;
    return TRUE;
}

LPITEMIDLIST WINAPI BrowseNowhere(BROWSEINFOW*) {
    return nullptr;
}

FARPROC WINAPI FindQuietProcedure(HMODULE module, LPCSTR name) {
    void* quiet = nullptr;
    if (IS_INTRESOURCE(name))
        quiet = test::AddressOf(OpenNoHelp);
    else if (std::strcmp(name, "ShellExecuteExW") == 0)
        quiet = test::AddressOf(StartNothing);
    else if (std::strcmp(name, "SHBrowseForFolderW") == 0)
        quiet = test::AddressOf(BrowseNowhere);
    return quiet ? reinterpret_cast<FARPROC>(quiet) : GetProcAddress(module, name);
}

void WINAPI WaitForNothing(DWORD) {}

template <class Action>
void Try(Action&& action) {
    try {
        action();
    } catch (const HostError&) {
    }
}

}  // namespace

QuietShell::QuietShell(HMODULE plugIn)
    : m_patch(plugIn, "GetProcAddress", test::AddressOf(FindQuietProcedure)) {}

InstallerStage::InstallerStage(HMODULE plugIn)
    : m_plugIn(plugIn),
      m_system(plugIn, test::SystemFolder::StandIns()),
      m_noWaits(plugIn, "Sleep", test::AddressOf(WaitForNothing)) {
    m_session.SetActionData(L"C:\\Driver\\kzpwriter.inf;C:\\Product");
}

void InstallerStage::Play() const {
    for (const char* const name : {"Install", "Uninstall"}) {
        const auto action = reinterpret_cast<UINT(WINAPI*)(MSIHANDLE)>(
            reinterpret_cast<void*>(GetProcAddress(m_plugIn, name)));
        const UINT answer = action(m_session.Handle());
        EXPECT_TRUE(answer == ERROR_SUCCESS || answer == ERROR_INSTALL_FAILURE ||
                    answer == ERROR_UNKNOWN_PROPERTY)
            << answer;
    }
}

bool PlaySheet(test::HostedSheet& host, const driverhost::SheetStep& edit) {
    host.run.Add(edit);
    host.run.Add([&](SheetUser& user) { user.Ok(); });
    try {
        host.run.Show();
        return true;
    } catch (const HostError& error) {
        EXPECT_EQ(std::wstring::npos, error.text.find(L"takes too long")) << error.what();
        return false;
    }
}

std::vector<HWND> ControlsOf(HWND page) {
    std::vector<HWND> controls;
    EnumChildWindows(
        page,
        [](HWND control, LPARAM all) -> BOOL {
            reinterpret_cast<std::vector<HWND>*>(all)->push_back(control);
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&controls));
    return controls;
}

void Use(SheetUser& user, HWND control, Dice& dice) {
    wchar_t kind[32] = L"";
    GetClassNameW(control, kind, 32);
    const int id = GetDlgCtrlID(control);
    Try([&] {
        if (kind == std::wstring(L"Edit"))
            dice.OneIn(2) ? user.SetText(id, RandomText(dice))
                          : user.Type(id, RandomText(dice).substr(0, 12));
        else if (kind == std::wstring(L"ComboBox"))
            user.SelectIndex(id, dice.Below(8));
        else if (kind == std::wstring(UPDOWN_CLASSW))
            user.Spin(id, dice.OneIn(2), 1 + dice.Below(3));
        else if (kind == std::wstring(L"Button"))
            user.Click(id);
    });
}

void UseAnything(SheetUser& user, Dice& dice) {
    const int page = dice.Below(user.Sheet().PageCount());
    if (dice.OneIn(6))
        Try([&] { user.ClickTab(page); });
    else if (const auto controls = ControlsOf(user.Sheet().PageWindow(page)); !controls.empty())
        Use(user, controls[static_cast<size_t>(dice.Below(static_cast<int>(controls.size())))], dice);
}

void WarmUpSheets() {
    test::HostedSheet host;
    const QuietShell shell(host.plugIn.Module());
    PlaySheet(host, [](SheetUser& user) {
        Dice dice(1);
        for (int page = 0; page < 2 * user.Sheet().PageCount(); ++page) {
            Try([&] { user.ClickTab(page % user.Sheet().PageCount()); });
            for (const HWND control : ControlsOf(user.Sheet().PageWindow(page % user.Sheet().PageCount())))
                Use(user, control, dice);
        }
        // Too much for the paper: leaving the page is refused with a message.
        Try([&] { user.SetText(IDC_LEFT, L"2000"); });
        Try([&] { user.ClickTab(0); });
        Try([&] { user.SetText(IDC_LEFT, L"0.5"); });
    });
}

std::wstring RandomText(Dice& dice) {
    static std::wistringstream made(
        L"0 8.5 25.4 100 2540 99999999999999999999999999999999999999999 1e38 -1 +2 .. nan inf 1.2.3 0.005 "
        L"YES no "
        L"C:\\ C:\\a;D:\\;; \x0661\x0662 \xD83D\xDE00");
    static const std::vector<std::wstring> words{std::istream_iterator<std::wstring, wchar_t>(made), {}};
    if (!dice.OneIn(3))
        return words[static_cast<size_t>(dice.Below(static_cast<int>(words.size())))];
    static constexpr int kLengths[] = {0, 1, 3, 8, 40, 258, 259, 260, 261, 1023, 1024, 5000};
    std::wstring text(static_cast<size_t>(dice.OneOf(kLengths)), L'9');
    static constexpr wchar_t kLetters[] = L"019.;\\ a%\x00E4\x20AC\xD800\xFFFF";
    if (dice.OneIn(2)) {
        for (wchar_t& letter : text)
            letter = dice.OneOf(kLetters);
    }
    return text;
}

}  // namespace kzp::stress
