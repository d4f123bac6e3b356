// What the page shows of the driver, the record and the store; what its controls write into the driver; and
// what becomes of them where driver, printer or registry offer less.
#include <cmath>
#include <optional>

#include "resources/resource.h"
#include "tests/settings_page/SettingsPageTest.h"
#include "tests/support/ImportPatch.h"

namespace kzp::test {
namespace {

using driverhost::SheetUser;
using DriverFeatures = SettingsPageTest;

// As Windows does, a list takes no entry without a text.
LRESULT WINAPI RefuseMissingText(HWND page, int control, UINT message, WPARAM wParam, LPARAM lParam) {
    return message == CB_ADDSTRING && !lParam ? CB_ERR
                                              : SendDlgItemMessageW(page, control, message, wParam, lParam);
}

// Features are found by the beginning of their keyword; an option without a name keeps its place.
TEST_F(DriverFeatures, AreListedInTheDriversOrder) {
    const struct {
        int list;
        Texts entries;
        const wchar_t* selected;
    } lists[] = {{IDC_PAPER, {L"Tabloid", L"", L"A4", L"User Defined 2"}, L"A4"},
                 {IDC_COLOR, {L"Zebra", L"", L"Monochrome"}, L"Zebra"}};
    tree = driverhost::DriverTree();
    tree.Add({"PaperSizeOfTheTray", L"Paper", 0, TVOT_LISTBOX, lists[0].entries, 2});
    tree.Add({"Color", L"Not quite", 0, TVOT_LISTBOX, {L"wrong"}, 0});
    tree.Add({"ColorMode", L"Color", 0, TVOT_LISTBOX, lists[1].entries, 0});
    for (const int item : {0, 2})
        tree.Items()[item].pOptType->pOptParam[1].pData = nullptr;
    WriteText(HKEY_CURRENT_USER, kSettingsKey, L"LaunchKZPView", L"no");
    WriteDword(HKEY_CURRENT_USER, kSettingsKey, L"OutputType", 1);
    std::optional<ImportPatch> patch;
    beforeShow = [&] {
        patch.emplace(host->plugIn.Module(), "SendDlgItemMessageW", AddressOf(RefuseMissingText));
    };
    Open({[&](SheetUser& user) {
        patch.reset();
        EXPECT_EQ(Announced(), "ColorMode=0 ") << "once, so that the driver brings its own items in line";
        for (const auto& [list, entries, selected] : lists) {
            EXPECT_EQ(ListEntries(user, list), entries);
            EXPECT_EQ(user.Text(list), selected);
        }
        EXPECT_FALSE(user.Visible(IDC_WIDTH));
        EXPECT_FALSE(user.Checked(IDC_DISPLAY_IN_VIEWER));
        EXPECT_TRUE(user.Checked(IDC_OUTPUT_KZP));
    }});
}

TEST_F(DriverFeatures, FollowTheirControlsAndAreAnnounced) {
    const struct {
        Use use;
        std::string announced;
    } cases[] = {
        {{IDC_PAPER, kCustom}, "PaperSize=7 "},
        {{IDC_QUALITY, L"1200 x 1200 dpi"}, "Resolution=4 "},
        {{IDC_COLOR, L"256 colors"}, "TrueColor=0 ColorMode=1 "},
        {{IDC_COLOR, L"True color"}, "TrueColor=1 ColorMode=2 "},
        {{IDC_LANDSCAPE}, "Orientation=1 "},
        {{IDC_PORTRAIT}, "Orientation=0 "},
        {{IDC_TOP, L"2"}, ""},  // these are the writer's own
        {{IDC_OUTPUT_KZP}, ""},
        {{IDC_DISPLAY_IN_VIEWER}, ""},
    };
    Open({[&](SheetUser& user) {
        constexpr DWORD kHidden = OPTIF_HIDE | OPTIF_EXT_HIDE;
        const HWND apply = GetDlgItem(host->sheet.Window(), IDC_SHEET_APPLY);
        OPTITEM& orientation = *host->session.Tree().Find("Orientation");
        OPTITEM& fifth = host->session.Tree().Items()[4];
        Announced();
        for (const auto& expected : cases) {
            const std::string& announced = expected.announced;
            SCOPED_TRACE(expected.use.control);
            orientation.Flags = fifth.Flags = kHidden;
            EnableWindow(apply, FALSE);
            Do(user, {expected.use});
            EXPECT_TRUE(user.ApplyEnabled());
            EXPECT_EQ(Announced(), announced);
            EXPECT_EQ(orientation.Flags, announced.starts_with("Orientation") ? OPTIF_EXT_HIDE : kHidden);
            EXPECT_EQ(fifth.Flags, announced.starts_with("TrueColor") ? OPTIF_EXT_HIDE : kHidden);
        }
        EnableWindow(apply, FALSE);
        SendMessageW(user.Find(IDC_QUALITY), CB_SHOWDROPDOWN, TRUE, 0);
        EXPECT_FALSE(user.ApplyEnabled());
        user.Spin(IDC_TOP_SPIN, true);
        EXPECT_TRUE(user.ApplyEnabled());
    }});
}

WINBOOL WINAPI LeaveAndSetText(HWND page, int control, LPCWSTR text) {
    NMHDR leaving = {page, 0, static_cast<UINT>(PSN_KILLACTIVE)};
    SendMessageW(page, WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&leaving));
    return SetDlgItemTextW(page, control, text);
}

// What an older version or another machine left behind. Anything but a no shows the viewer, and only type one
// is KZP.
TEST_F(DriverFeatures, MayComeWithWildMarginsAndSettings) {
    margins = {3.4e38f, -12.7f, HUGE_VALF, NAN};
    WriteText(HKEY_CURRENT_USER, kSettingsKey, L"LaunchKZPView", L"maybe");
    WriteDword(HKEY_CURRENT_USER, kSettingsKey, L"OutputType", 0);
    std::optional<ImportPatch> patch;
    beforeShow = [&] { patch.emplace(host->plugIn.Module(), "SetDlgItemTextW", AddressOf(LeaveAndSetText)); };
    Open({[&](SheetUser& user) {
        patch.reset();
        EXPECT_EQ(host->run.Boxes().size(), 2u)
            << "once for each round of visits, and never while it is filled";
        EXPECT_EQ(EditTexts(user), (Texts{L"8.50", L"10.50", L"100.00", L"0.50", L"0.00", L"0.00"}));
        EXPECT_TRUE(user.Checked(IDC_DISPLAY_IN_VIEWER));
        EXPECT_EQ(Setting(L"LaunchKZPView")->Text(), L"YES");
        EXPECT_TRUE(user.Checked(IDC_OUTPUT_KZPX));
        user.Type(IDC_LEFT, L"0");
    }});
}

// Uses everything that can be used; what is missing must neither crash nor be written beside its arrays.
void UseEverything(SheetUser& user) {
    for (const int list : {IDC_PAPER, IDC_QUALITY, IDC_COLOR}) {
        SendMessageW(user.Find(list), CB_SETCURSEL, 0, 0);
        SendMessageW(user.Sheet().PageWindow(kSettingsTab), WM_COMMAND, MAKEWPARAM(list, CBN_SELCHANGE), 0);
    }
    for (const int button : {IDC_MILLIMETERS, IDC_INCHES, IDC_LANDSCAPE, IDC_PORTRAIT, IDC_DISPLAY_IN_VIEWER,
                             IDC_OUTPUT_KZPX, IDC_OUTPUT_KZP})
        user.Click(button);
    user.Type(IDC_LEFT, L"1");
    user.Spin(IDC_LEFT_SPIN, true);
    EXPECT_EQ(user.Text(IDC_LEFT), L"1.05");
}

// Each feature lacks each of its parts once, each time beside another lack, and in no sheet two features lack
// the same. The user edits what there is, applies, and closes with OK when the driver has no items any more.
TEST_F(DriverFeatures, MayBeMissingOrLackPartsAsAllElseMay) {
    const std::function<void(OPTITEM&)> parts[] = {
        [](OPTITEM& item) { *item.pOptType = {}; }, [](OPTITEM& item) { item.pOptType = nullptr; },
        [](OPTITEM& item) { item.UserData = 0; },   [](OPTITEM& item) { item.Sel = 1000; },
        [](OPTITEM& item) { item.Sel = -1; },
    };
    const auto param = [this]() -> OEMCUIPPARAM& { return host->session.UIParam(); };
    const std::function<void()> lacks[] = {
        [&] { options.firstItems = 0; },
        [&] { options.firstItems = 4; },
        [&] { options.offersHelper = false; },
        [&] { beforeShow = [&] { param().hPrinter = reinterpret_cast<HANDLE>(0x1230); }; },
        [&] { beforeShow = [&] { param().pOEMDM = nullptr; }; },
        [] { ScratchRegistry::RefuseUserKeys(); },  // for good
    };
    for (size_t sheet = 0; sheet < std::size(lacks); ++sheet) {
        SCOPED_TRACE(sheet);
        size_t part = sheet;
        for (const char* keyword : {"PaperSize", "Resolution", "ColorMode", "Orientation", "CustomUnit"})
            parts[part++ % std::size(parts)](*tree.Find(keyword));
        beforeShow = [] {};
        lacks[sheet]();
        Open({
            [&](SheetUser& user) {
                UseEverything(user);
                user.Apply();
            },
            [&](SheetUser& user) {
                EXPECT_EQ(host->sheet.Applied(), 1);
                EXPECT_EQ(RecordMargins(host->session)[1], margins[1]) << "also where it is not shown";
                param().cDrvOptItems = 0;
                UseEverything(user);
                user.Ok();
            },
        });
    }
}

}  // namespace
}  // namespace kzp::test
