// Random commands and notifications to each page of open sheets, over stored values of every kind, between
// edits of a person and commits: what a page may receive from its controls and from the sheet, with pointers
// that are good.
#include <windows.h>

#include <commctrl.h>
#include <prsht.h>

#include <algorithm>
#include <cstring>

#include "resources/resource.h"
#include "settings/SettingsStore.h"
#include "tools/stress/Stage.h"

namespace kzp::stress {
namespace {

using driverhost::SheetUser;

// Those of buttons, lists and edits lie close together.
constexpr int kControlCodes[] = {0, 0x300, 0x400};

constexpr UINT kPageCodes[] = {0u - 200, 0u - 721, 0u - 100, 0u};  // of sheets, spin buttons, list views, all

// A page of ours; the fonts dialog lives inside the driver's page, and that page itself is not ours.
HWND AnyPage(SheetUser& user, Dice& dice) {
    const HWND page = user.Sheet().PageWindow(dice.Below(user.Sheet().PageCount()));
    const HWND fonts = GetParent(user.Find(IDC_FONT_LIST));
    return GetDlgItem(page, IDC_HELP_SETTINGS) || GetDlgItem(page, IDC_HELP_OUTPUT) || !fonts ? page : fonts;
}

void Command(HWND page, int id, Campaign& run) {
    const int code = run.Random().OneOf(kControlCodes) + run.Random().Below(12);
    run.Doing("WM_COMMAND control %d, code %d", id, code);
    SendMessageW(page, WM_COMMAND, MAKEWPARAM(id, code), reinterpret_cast<LPARAM>(GetDlgItem(page, id)));
}

void Notify(HWND page, int id, Campaign& run) {
    // As large as the largest that any of these codes brings.
    union {
        NMHDR header;
        NMUPDOWN step;
        NMLISTVIEW change;
        PSHNOTIFY sheet;
    } notice = {};
    Dice& dice = run.Random();
    notice.change.iItem = dice.Below(200) - 1;
    notice.change.uNewState = static_cast<UINT>(dice.Below(0x10000)) & 0xF003;
    const UINT code = dice.OneOf(kPageCodes) - static_cast<UINT>(dice.Below(24));
    notice.header = {GetDlgItem(page, id), static_cast<UINT_PTR>(id), code};
    if (code == static_cast<UINT>(UDN_DELTAPOS))
        notice.step.iDelta = dice.Below(9) - 4;
    run.Doing("WM_NOTIFY control %d, code %u", id, code);
    SendMessageW(page, WM_NOTIFY, notice.header.idFrom, reinterpret_cast<LPARAM>(&notice));
}

void SendSomething(SheetUser& user, Campaign& run) {
    Dice& dice = run.Random();
    const HWND page = AnyPage(user, dice);
    const auto controls = driverhost::Descendants(page);
    const int id = dice.OneIn(8) || controls.empty() ? dice.Below(65536) : GetDlgCtrlID(dice.OneOf(controls));
    const int what = dice.Below(20);
    if (what < 7)
        Command(page, id, run);
    else if (what < 13)
        Notify(page, id, run);
    else if (what < 19)
        UseAnything(user, dice);
    else
        user.Sheet().Session().TellCallback(CPSUICB_REASON_APPLYNOW,
                                            user.Sheet().PageWindow(user.Sheet().DriverPageIndex()));
}

// Every type, any length up to beyond every reader's limit; some values are missing.
void StoreAtRandom(Dice& dice) {
    for (const wchar_t* const name :
         {kLaunchView, kPromptFileName, kDefaultDir, kPathDirs, kOutputType, kFontList}) {
        BYTE block[4096];
        const std::wstring text = RandomText(dice);
        const auto bytes = static_cast<size_t>(dice.OneIn(2) ? dice.Below(300) : dice.Below(sizeof block));
        std::ranges::generate(block, [&] { return static_cast<BYTE>(dice.Below(256)); });
        if (dice.OneIn(2))
            std::memcpy(block, text.c_str(), std::min(sizeof block, text.size() * sizeof(wchar_t)));
        if (!dice.OneIn(4))
            test::WriteValue(HKEY_CURRENT_USER, test::kSettingsKey, name,
                             static_cast<DWORD>(dice.OneIn(2) ? REG_SZ : dice.Below(13)), block, bytes);
    }
}

struct Messages : test::SheetTest {};

TEST_F(Messages, OfAnyKindLeaveTheSheetAndTheProcessWhole) {
    WarmUpSheets();
    for (Campaign run(IsBrief() ? 3 : 60, 1); run.Next();) {
        run.Doing("a sheet over random values");
        StoreAtRandom(run.Random());
        driverhost::SheetOptions shape;
        shape.applyButton = !run.Random().OneIn(4);
        shape.extraFirstPage = run.Random().OneIn(4);
        test::HostedSheet host({}, shape);
        const QuietShell shell(host.plugIn.Module());
        PlaySheet(host, [&](SheetUser& user) {
            for (int message = 0; message < (IsBrief() ? 150 : 500); ++message)
                SendSomething(user, run);
            run.Doing("closing");
        });
    }
}

}  // namespace
}  // namespace kzp::stress
