#include "tools/stress/World.h"

#include <shellapi.h>
#include <shlobj.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <iterator>

#include "resources/resource.h"
#include "tools/driverhost/Text.h"
#include "tools/standins/spooler/SpoolerControl.h"

namespace stress {

namespace {

using driverhost::HostError;
using driverhost::SheetUser;

constexpr WORD kHtmlHelpWOrdinal = 15;
constexpr wchar_t kTooLong[] = L"the sheet takes too long: cancelled";

bool g_succeed = true;

HWND WINAPI OpenNoHelp(HWND, LPCWSTR, UINT, DWORD_PTR) {
    return nullptr;
}

BOOL WINAPI StartNothing(SHELLEXECUTEINFOW* start) {
    start->hProcess = nullptr;
    return g_succeed;
}

LPITEMIDLIST WINAPI BrowseNowhere(BROWSEINFOW*) {
    return nullptr;
}

FARPROC WINAPI FindQuietProcedure(HMODULE module, LPCSTR name) {
    void* quiet = nullptr;
    if (IS_INTRESOURCE(name)) {
        if (reinterpret_cast<ULONG_PTR>(name) == kHtmlHelpWOrdinal)
            quiet = kzp::test::AddressOf(OpenNoHelp);
    } else if (std::strcmp(name, "ShellExecuteExW") == 0) {
        quiet = kzp::test::AddressOf(StartNothing);
    } else if (std::strcmp(name, "SHBrowseForFolderW") == 0) {
        quiet = kzp::test::AddressOf(BrowseNowhere);
    }
    return quiet ? reinterpret_cast<FARPROC>(quiet) : GetProcAddress(module, name);
}

// Refused, an action says so with one of these.
constexpr UINT kAnswers[] = {ERROR_SUCCESS, ERROR_INSTALL_FAILURE, ERROR_UNKNOWN_PROPERTY};

void WINAPI WaitForNothing(DWORD) {}

constexpr int kEdits[] = {IDC_WIDTH, IDC_HEIGHT, IDC_LEFT, IDC_RIGHT, IDC_TOP, IDC_BOTTOM};
constexpr int kLists[] = {IDC_PAPER,  IDC_PAPER,      IDC_QUALITY,   IDC_COLOR,
                          IDC_FOLDER, IDC_ICM_INTENT, IDC_ICM_METHOD};
constexpr int kButtons[] = {
    IDC_INCHES,        IDC_MILLIMETERS,      IDC_PORTRAIT,      IDC_LANDSCAPE,          IDC_OUTPUT_KZPX,
    IDC_OUTPUT_KZP,    IDC_PROMPT_FILE_NAME, IDC_USER_LOCATION, IDC_DOCUMENTS_LOCATION, IDC_SOURCE_LOCATION,
    IDC_BROWSE,        IDC_FONTS_ALL,        IDC_FONTS_NONE,    IDC_FONTS_SELECT,       IDC_DISPLAY_IN_VIEWER,
    IDC_HELP_SETTINGS, IDC_HELP_OUTPUT,      IDC_HELP_ADVANCED};
constexpr int kSpins[] = {IDC_WIDTH_SPIN, IDC_HEIGHT_SPIN, IDC_LEFT_SPIN,
                          IDC_RIGHT_SPIN, IDC_TOP_SPIN,    IDC_BOTTOM_SPIN};

// What cannot be used at the moment is left alone: a person could not use it either.
template <class Use>
void Try(Use&& use) {
    try {
        use();
    } catch (const HostError&) {
    }
}

}  // namespace

void SetUpPrinter() {
    kzp::standins::spooler::PrinterSetUp printer;
    printer.name = driverhost::kDefaultPrinter;
    kzp::standins::spooler::SetUpPrinter(printer);
}

InstallerStage::InstallerStage(HMODULE plugIn)
    : m_plugIn(plugIn),
      m_system(plugIn, kzp::test::SystemFolder::StandIns()),
      m_noWaits(plugIn, "Sleep", kzp::test::AddressOf(WaitForNothing)) {
    m_session.SetActionData(L"C:\\Driver\\kzpwriter.inf;C:\\Product");
}

bool InstallerStage::Play() const {
    return std::ranges::all_of(std::array{"Install", "Uninstall"}, [this](const char* name) {
        const auto action = reinterpret_cast<UINT(WINAPI*)(MSIHANDLE)>(
            reinterpret_cast<void*>(GetProcAddress(m_plugIn, name)));
        return std::ranges::find(kAnswers, action(m_session.Handle())) != std::end(kAnswers);
    });
}

QuietShell::QuietShell(HMODULE plugIn, bool succeed)
    : m_patch(plugIn, "GetProcAddress", kzp::test::AddressOf(FindQuietProcedure)) {
    g_succeed = succeed;
}

LONG_PTR CALLBACK TakeEverything(HANDLE, UINT, LPARAM, LPARAM) {
    return 1;
}

std::optional<LONG> PlaySheet(kzp::test::HostedSheet& host, const driverhost::SheetStep& edit,
                              Ending ending) {
    host.run.limitMilliseconds = 45'000;
    host.run.Add(edit);
    host.run.Add([&](SheetUser& user) { ending == Ending::kOk ? user.Ok() : user.Cancel(); });
    try {
        return host.run.Show();
    } catch (const HostError& error) {
        if (error.text == kTooLong)
            throw;
        return std::nullopt;
    }
}

void EditAtRandom(SheetUser& user, Dice& dice) {
    Try([&] {
        switch (dice.Below(8)) {
            case 0:
                return user.ClickTab(dice.Below(user.Sheet().PageCount()));
            case 1:
                return user.Type(dice.OneOf(kEdits), RandomText(dice).substr(0, 12));
            case 2:
                return user.SetText(dice.OneOf(kEdits), RandomText(dice));
            case 3:
                return user.Spin(dice.OneOf(kSpins), dice.OneIn(2), 1 + dice.Below(3));
            case 4:
            case 5:
                return user.SelectIndex(dice.OneOf(kLists), dice.Below(8));
            default:
                return user.Click(dice.OneOf(kButtons));
        }
    });
}

void WarmUpSheets() {
    const auto useEverything = [](SheetUser& user) {
        for (int page = 0; page < user.Sheet().PageCount(); ++page) {
            Try([&] { user.ClickTab(page); });
            for (const int list : kLists)
                Try([&] { user.SelectIndex(list, 1); });
            for (const int button : kButtons)
                Try([&] { user.Click(button); });
            for (const int spin : kSpins)
                Try([&] { user.Spin(spin, true); });
            // Too much for the paper: leaving the page is refused with a message.
            for (const int edit : kEdits)
                Try([&] { user.SetText(edit, L"2000"); });
            Try([&] { user.ClickTab((page + 1) % user.Sheet().PageCount()); });
            for (const int edit : kEdits)
                Try([&] { user.SetText(edit, L"0.5"); });
        }
    };
    kzp::test::HostedSheet host;
    const QuietShell shell(host.plugIn.Module());
    (void)PlaySheet(host, useEverything, Ending::kOk);
}

std::wstring RandomText(Dice& dice) {
    static constexpr const wchar_t* kTexts[] = {L"",
                                                L"0",
                                                L"8.5",
                                                L"11",
                                                L"25.4",
                                                L"100",
                                                L"2540",
                                                L"99999999999999999999999999999999999999999",
                                                L"1e38",
                                                L"-1",
                                                L"+2",
                                                L"..",
                                                L"1.2.3",
                                                L"\x0661\x0662",
                                                L"\xD83D\xDE00",
                                                L"C:\\",
                                                L"C:\\windows;D:\\;",
                                                L"nan",
                                                L"inf",
                                                L"0.005"};
    if (!dice.OneIn(3))
        return dice.OneOf(kTexts);
    static constexpr int kLengths[] = {1, 3, 8, 40, 258, 259, 260, 261, 300, 1023, 1024, 5000};
    std::wstring text(static_cast<size_t>(dice.OneOf(kLengths)), L'9');
    static constexpr wchar_t kLetters[] = L"0123456789....;\\ aZ%\x00E4\x20AC\xD800\xFFFF";
    if (dice.OneIn(2)) {
        for (wchar_t& letter : text)
            letter = kLetters[dice.Below(static_cast<int>(std::size(kLetters)) - 1)];
    }
    return text;
}

}  // namespace stress
