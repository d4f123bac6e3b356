// Random messages to each page of an open sheet: what a page may receive from its controls, from the sheet
// and from the system, with pointers that are good.
#include <windows.h>

#include <commctrl.h>
#include <prsht.h>

#include "resources/resource.h"
#include "tools/stress/Campaigns.h"
#include "tools/stress/World.h"

namespace stress {

namespace {

using driverhost::SheetUser;

constexpr int kPageControls[] = {IDC_HELP_SETTINGS,
                                 IDC_PAPER,
                                 IDC_WIDTH,
                                 IDC_HEIGHT,
                                 IDC_WIDTH_SPIN,
                                 IDC_HEIGHT_SPIN,
                                 IDC_LEFT,
                                 IDC_LEFT_SPIN,
                                 IDC_RIGHT,
                                 IDC_RIGHT_SPIN,
                                 IDC_TOP,
                                 IDC_TOP_SPIN,
                                 IDC_BOTTOM,
                                 IDC_BOTTOM_SPIN,
                                 IDC_INCHES,
                                 IDC_MILLIMETERS,
                                 IDC_PORTRAIT,
                                 IDC_LANDSCAPE,
                                 IDC_QUALITY,
                                 IDC_COLOR,
                                 IDC_OUTPUT_KZPX,
                                 IDC_OUTPUT_KZP,
                                 IDC_FOLDER,
                                 IDC_BROWSE,
                                 IDC_SOURCE_LOCATION,
                                 IDC_USER_LOCATION,
                                 IDC_PROMPT_FILE_NAME,
                                 IDC_HELP_OUTPUT,
                                 IDC_DOCUMENTS_LOCATION,
                                 IDC_FONTS_ALL,
                                 IDC_FONTS_NONE,
                                 IDC_FONTS_SELECT,
                                 IDC_FONT_LIST,
                                 IDC_ICM_INTENT,
                                 IDC_ICM_METHOD,
                                 IDC_HELP_ADVANCED,
                                 IDC_DISPLAY_IN_VIEWER};

constexpr UINT kPlainMessages[] = {WM_SHOWWINDOW, WM_SIZE,          WM_ENABLE,          WM_SETFOCUS,
                                   WM_KILLFOCUS,  WM_PAINT,         WM_SYSCOLORCHANGE,  WM_SETTINGCHANGE,
                                   WM_CANCELMODE, WM_MOUSEACTIVATE, WM_FONTCHANGE,      WM_TIMER,
                                   WM_HSCROLL,    WM_VSCROLL,       WM_MOUSEMOVE,       WM_KEYDOWN,
                                   WM_KEYUP,      WM_CHAR,          WM_GETDLGCODE,      WM_DISPLAYCHANGE,
                                   WM_ENTERIDLE,  WM_MENUSELECT,    WM_QUERYENDSESSION, WM_THEMECHANGED};

constexpr WORD kControlCodes[] = {BN_CLICKED,   CBN_SELCHANGE, CBN_EDITCHANGE, EN_CHANGE,       EN_UPDATE,
                                  CBN_SELENDOK, CBN_DROPDOWN,  EN_KILLFOCUS,   BN_DOUBLECLICKED};

constexpr UINT kPageCodes[] = {static_cast<UINT>(PSN_SETACTIVE), static_cast<UINT>(PSN_KILLACTIVE),
                               static_cast<UINT>(PSN_APPLY),     static_cast<UINT>(PSN_RESET),
                               static_cast<UINT>(PSN_HELP),      static_cast<UINT>(PSN_QUERYCANCEL),
                               static_cast<UINT>(UDN_DELTAPOS),  static_cast<UINT>(LVN_ITEMCHANGED),
                               static_cast<UINT>(NM_CLICK),      static_cast<UINT>(NM_KILLFOCUS)};

struct Sender {
    Run& run;
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
    int AnyControl() { return dice.OneIn(8) ? dice.Below(65536) : dice.OneOf(kPageControls); }

    void Command(HWND page) {
        const int id = AnyControl();
        const WORD code = dice.OneIn(8) ? static_cast<WORD>(dice.Roll()) : dice.OneOf(kControlCodes);
        run.Doing(L"WM_COMMAND control %d, code %u", id, code);
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
        const int id = AnyControl();
        notice.change.iItem = dice.Below(200) - 1;
        notice.change.uNewState = static_cast<UINT>(dice.Roll()) & 0xF003;
        notice.header.hwndFrom = GetDlgItem(page, id);
        notice.header.idFrom = static_cast<UINT_PTR>(id);
        notice.header.code = dice.OneIn(8) ? static_cast<UINT>(dice.Roll()) : dice.OneOf(kPageCodes);
        if (notice.header.code == static_cast<UINT>(UDN_DELTAPOS))
            notice.step.iDelta = dice.Below(9) - 4;
        run.Doing(L"WM_NOTIFY control %d, code %u", id, notice.header.code);
        SendMessageW(page, WM_NOTIFY, notice.header.idFrom, reinterpret_cast<LPARAM>(&notice));
    }
    void Plain(HWND page) {
        const UINT message = dice.OneOf(kPlainMessages);
        const WPARAM wParam = message == WM_SHOWWINDOW ? dice.Roll() % 2 : dice.Roll() % 256;
        run.Doing(L"message 0x%04X", message);
        SendMessageW(page, message, wParam, 0);
    }
    void Fill(HWND page) {
        const HWND control = GetDlgItem(page, dice.OneOf(kPageControls));
        const std::wstring text = RandomText(dice);
        run.Doing(L"text of %zu characters into control %d", text.size(), GetDlgCtrlID(control));
        SendMessageW(control, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
    }
    void Choose(HWND page) {
        static constexpr int kLists[] = {IDC_PAPER,  IDC_QUALITY,    IDC_COLOR,
                                         IDC_FOLDER, IDC_ICM_INTENT, IDC_ICM_METHOD};
        const int list = dice.OneOf(kLists);
        const int entry = dice.Below(12) - 2;
        run.Doing(L"entry %d of list %d", entry, list);
        const HWND control = GetDlgItem(page, list);
        SendMessageW(control, CB_SETCURSEL, static_cast<WPARAM>(entry), 0);
        SendMessageW(page, WM_COMMAND, MAKEWPARAM(list, CBN_SELCHANGE), reinterpret_cast<LPARAM>(control));
    }
    void Send() {
        const HWND page = AnyPage();
        switch (dice.Below(24)) {
            case 0:
                run.Doing(L"a commit");
                user.Sheet().Session().TellCallback(CPSUICB_REASON_APPLYNOW,
                                                    user.Sheet().PageWindow(user.Sheet().DriverPageIndex()));
                break;
            case 1:
            case 2:
            case 3:
            case 4:
            case 5:
            case 6:
                Command(page);
                break;
            case 7:
            case 8:
            case 9:
            case 10:
                Notify(page);
                break;
            case 11:
            case 12:
            case 13:
                Plain(page);
                break;
            case 14:
            case 15:
            case 16:
            case 17:
                Fill(page);
                break;
            case 18:
            case 19:
            case 20:
                Choose(page);
                break;
            default:
                run.Doing(L"an edit");
                EditAtRandom(user, dice);
        }
        run.Tried();
    }
};

}  // namespace

void Messages(Run& run) {
    const kzp::test::ScratchRegistry registry;
    SetUpPrinter();
    WarmUpSheets();
    const auto messages = static_cast<int>(run.Either(1500, 150));
    for (run.Begin(run.Either(20, 2), 1); run.Next();) {
        kzp::test::HostedSheet host;
        const QuietShell shell(host.plugIn.Module());
        const auto closed = PlaySheet(
            host,
            [&](SheetUser& user) {
                Sender sender{run, user};
                for (int message = 0; message < messages; ++message)
                    sender.Send();
                run.Doing(L"closing");
            },
            Ending::kOk);
        run.Expect(closed.has_value(), L"the sheet does not open");
    }
}

}  // namespace stress
