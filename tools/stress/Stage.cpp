#include "tools/stress/Stage.h"

#include <commctrl.h>

#include <algorithm>
#include <cstring>

#include "resources/resource.h"

namespace kzp::stress {

using driverhost::Descendants;
using driverhost::HostError;
using driverhost::SheetUser;

namespace {

// Whatever it is given: no help window, no process, no folder.
INT_PTR WINAPI DoNothing() {
    return 0;
}

// The help control's function is asked for by its number.
FARPROC WINAPI FindQuietFunction(HMODULE module, LPCSTR name) {
    const bool opensSomething = IS_INTRESOURCE(name) || std::strcmp(name, "ShellExecuteExW") == 0 ||
                                std::strcmp(name, "SHBrowseForFolderW") == 0;
    return opensSomething ? DoNothing : GetProcAddress(module, name);
}

template <class Action>
void Try(Action&& action) {
    try {
        action();
    } catch (const HostError&) {
    }
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

}  // namespace

QuietShell::QuietShell(HMODULE plugIn)
    : m_patch(plugIn, "GetProcAddress", test::AddressOf(FindQuietFunction)) {}

void PlaySheet(test::HostedSheet& host, const driverhost::SheetStep& edit) {
    host.run.Add(edit);
    host.run.Add([&](SheetUser& user) { user.Ok(); });
    host.run.Show();
}

void UseAnything(SheetUser& user, Dice& dice) {
    const int page = dice.Below(user.Sheet().PageCount());
    if (dice.OneIn(6))
        Try([&] { user.ClickTab(page); });
    else if (const auto controls = Descendants(user.Sheet().PageWindow(page)); !controls.empty())
        Use(user, dice.OneOf(controls), dice);
}

void WarmUpSheets() {
    test::HostedSheet host;
    const QuietShell shell(host.plugIn.Module());
    PlaySheet(host, [](SheetUser& user) {
        Dice dice(1);
        const int pages = user.Sheet().PageCount();
        for (int page = 0; page < 2 * pages; ++page) {
            Try([&] { user.ClickTab(page % pages); });
            for (const HWND control : Descendants(user.Sheet().PageWindow(page % pages)))
                Use(user, control, dice);
        }
        // Too much for the paper: leaving the page is refused with a message.
        Try([&] { user.SetText(IDC_LEFT, L"2000"); });
        Try([&] { user.ClickTab(0); });
        Try([&] { user.SetText(IDC_LEFT, L"0.5"); });
    });
}

std::wstring RandomText(Dice& dice) {
    static constexpr const wchar_t* kWords[] = {
        L"0",     L"8.5",          L"25.4",
        L"100",   L"2540",         L"99999999999999999999999999999999999999999",
        L"-1",    L"1e38",         L"+2",
        L"..",    L"nan",          L"inf",
        L"YES",   L"no",           L"0.005",
        L"C:\\",  L"C:\\a;D:\\;;", L"\x0661\x0662",
        L"1.2.3", L"\xD83D\xDE00"};
    static constexpr int kLengths[] = {0, 1, 3, 8, 40, 258, 259, 260, 261, 1023, 1024, 5000};
    static constexpr wchar_t kLetters[] = L"019.;\\ a%\x00E4\x20AC\xD800\xFFFF";
    if (!dice.OneIn(3))
        return dice.OneOf(kWords);
    std::wstring text(static_cast<size_t>(dice.OneOf(kLengths)), L'9');
    if (dice.OneIn(2))
        std::ranges::generate(text, [&] { return dice.OneOf(kLetters); });
    return text;
}

}  // namespace kzp::stress
