// Random messages to each page of open sheets, over stored values of every kind: what a page may receive from
// its controls, from the sheet and from the system, with pointers that are good, between edits of a person
// and commits.
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

constexpr UINT kPlainMessages[] = {WM_SHOWWINDOW, WM_SIZE,  WM_ENABLE,        WM_PAINT,
                                   WM_HSCROLL,    WM_TIMER, WM_SETTINGCHANGE, WM_THEMECHANGED};

// Those of buttons, lists and edits lie close together.
constexpr int kControlCodes[] = {0, 0x300, 0x400};

constexpr UINT kPageCodes[] = {0u - 200, 0u - 721, 0u - 100, 0u};  // of sheets, spin buttons, list views, all

struct Sender {
    Campaign& run;
    SheetUser& user;
    Dice& dice = run.Random();

    HWND AnyPage() {
        const HWND page = user.Sheet().PageWindow(dice.Below(user.Sheet().PageCount()));
        // The fonts dialog lives inside the driver's page, and that page itself is not ours.
        const HWND own = GetDlgItem(page, IDC_HELP_SETTINGS) || GetDlgItem(page, IDC_HELP_OUTPUT)
                             ? page
                             : GetParent(user.Find(IDC_FONT_LIST));
        return own ? own : page;
    }
    HWND AnyControl(HWND page) {
        const auto controls = ControlsOf(page);
        return controls.empty() ? nullptr : dice.OneOf(controls);
    }
    int AnyId(HWND page) { return dice.OneIn(8) ? dice.Below(65536) : GetDlgCtrlID(AnyControl(page)); }

    void Command(HWND page, int id, int code) {
        run.Doing("WM_COMMAND control %d, code %d", id, code);
        SendMessageW(page, WM_COMMAND, MAKEWPARAM(id, code), reinterpret_cast<LPARAM>(GetDlgItem(page, id)));
    }
    void Notify(HWND page) {
        // As large as the largest that any of these codes brings.
        union {
            NMHDR header;
            NMUPDOWN step;
            NMLISTVIEW change;
            PSHNOTIFY sheet;
        } notice = {};
        const int id = AnyId(page);
        notice.change.iItem = dice.Below(200) - 1;
        notice.change.uNewState = static_cast<UINT>(dice.Below(0x10000)) & 0xF003;
        notice.header.hwndFrom = GetDlgItem(page, id);
        notice.header.idFrom = static_cast<UINT_PTR>(id);
        notice.header.code = dice.OneOf(kPageCodes) - static_cast<UINT>(dice.Below(24));
        if (notice.header.code == static_cast<UINT>(UDN_DELTAPOS))
            notice.step.iDelta = dice.Below(9) - 4;
        run.Doing("WM_NOTIFY control %d, code %u", id, notice.header.code);
        SendMessageW(page, WM_NOTIFY, notice.header.idFrom, reinterpret_cast<LPARAM>(&notice));
    }
    void Plain(HWND page) {
        const UINT message = dice.OneOf(kPlainMessages);
        run.Doing("message 0x%04X", message);
        SendMessageW(page, message, static_cast<WPARAM>(dice.Below(message == WM_SHOWWINDOW ? 2 : 256)), 0);
    }
    void Fill(HWND control) {
        const std::wstring text = RandomText(dice);
        run.Doing("text of %zu characters into control %d", text.size(), GetDlgCtrlID(control));
        SendMessageW(control, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
    }
    void Send() {
        const HWND page = AnyPage();
        const int what = dice.Below(20);
        if (what < 6)
            Command(page, AnyId(page), dice.OneOf(kControlCodes) + dice.Below(12));
        else if (what < 10)
            Notify(page);
        else if (what < 12)
            Plain(page);
        else if (what < 15)
            Fill(AnyControl(page));
        else if (what < 19)
            UseAnything(user, dice);
        else
            user.Sheet().Session().TellCallback(CPSUICB_REASON_APPLYNOW,
                                                user.Sheet().PageWindow(user.Sheet().DriverPageIndex()));
    }
};

struct Messages : test::SheetTest {
    // Every type, any length up to beyond every reader's limit; some values are missing.
    static void StoreAtRandom(Dice& dice) {
        for (const wchar_t* const name :
             {kLaunchView, kPromptFileName, kDefaultDir, kPathDirs, kOutputType, kFontList}) {
            BYTE block[4096];
            const std::wstring text = RandomText(dice);
            const auto bytes =
                static_cast<size_t>(dice.OneIn(2) ? dice.Below(300) : dice.Below(sizeof block));
            std::ranges::generate(block, [&] { return static_cast<BYTE>(dice.Below(256)); });
            if (dice.OneIn(2))
                std::memcpy(block, text.c_str(), std::min(sizeof block, text.size() * sizeof(wchar_t)));
            if (!dice.OneIn(4))
                test::WriteValue(HKEY_CURRENT_USER, test::kSettingsKey, name,
                                 static_cast<DWORD>(dice.OneIn(2) ? REG_SZ : dice.Below(13)), block, bytes);
        }
    }
};

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
            Sender sender{run, user};
            for (int message = 0; message < (IsBrief() ? 150 : 500); ++message)
                sender.Send();
            run.Doing("closing");
        });
    }
}

}  // namespace
}  // namespace kzp::stress
