// What the page shows of the driver, the record and the store; what its controls write into the driver; and
// what becomes of them where driver, printer or registry offer less.
#include <cmath>
#include <optional>

#include "resources/resource.h"
#include "tests/settings_page/SettingsPageTest.h"
#include "tests/support/ImportPatch.h"

namespace kzp::test {
namespace {

namespace spooler = standins::spooler;
using driverhost::SheetUser;
using DriverFeatures = SettingsPageTest;

// As Windows does, a list takes no entry without a text.
LRESULT WINAPI RefuseMissingText(HWND page, int control, UINT message, WPARAM wParam, LPARAM lParam) {
    return message == CB_ADDSTRING && !lParam ? CB_ERR
                                              : SendDlgItemMessageW(page, control, message, wParam, lParam);
}

// Features are found by the beginning of their keyword; an option without a name keeps its place.
TEST_F(DriverFeatures, AreListedInTheDriversOrder) {
    const Texts papers = {L"Tabloid", L"", L"A4", L"User Defined", L"User Defined 2"};
    const Texts qualities = {L"1200 x 1200 dpi", L"", L"200 x 200 dpi"};
    const Texts colors = {L"Zebra", L"", L"Monochrome"};
    tree = driverhost::DriverTree();
    tree.Add({"PaperSizeOfTheTray", L"Paper", 0, TVOT_LISTBOX, papers, 2});
    tree.Add({"", L"Heading", DMPUB_NONE, TVOT_LISTBOX, {}});
    tree.Add({"Res", L"Not quite", 0, TVOT_LISTBOX, {L"wrong"}, 0});
    tree.Add({"Resolution", L"Quality", 0, TVOT_LISTBOX, qualities, 2});
    tree.Add({"Resolution", L"Second", 0, TVOT_LISTBOX, {L"second", L"third"}, 0});
    tree.Add({"ColorMode", L"Color", 0, TVOT_LISTBOX, colors, 0});
    tree.Add({"Orientation", L"Orientation", 0, TVOT_2STATES, {L"Portrait", L"Landscape"}, 1});
    tree.Find("Res")->UserData = 0;
    const std::pair<int, int> lists[] = {{IDC_PAPER, 0}, {IDC_QUALITY, 3}, {IDC_COLOR, 5}};
    for (const auto& [list, item] : lists)
        tree.Items()[item].pOptType->pOptParam[1].pData =
            list == IDC_QUALITY ? MAKEINTRESOURCEW(17) : nullptr;
    std::optional<ImportPatch> patch;
    beforeShow = [&] {
        patch.emplace(host->plugIn.Module(), "SendDlgItemMessageW", AddressOf(RefuseMissingText));
    };
    Open({[&](SheetUser& user) {
        patch.reset();
        EXPECT_EQ(host->sheet.CurrentPage(), kSettingsTab);
        // The driver is told of the colour mode once, so that it brings its own items in line.
        const auto& announced = host->session.Helper().Announcements();
        ASSERT_EQ(announced.size(), 1u);
        EXPECT_EQ(announced[0].keyword, "ColorMode");
        EXPECT_TRUE(announced[0].rightSheet);
        EXPECT_EQ(announced[0].mode, OEMCUIP_DOCPROP);
        Texts shown = papers;
        shown[3] = host->plugIn.ResourceText(IDS_CUSTOM_PAPER);
        EXPECT_EQ(ListEntries(user, IDC_PAPER), shown);
        EXPECT_EQ(ListEntries(user, IDC_QUALITY), qualities);
        EXPECT_EQ(ListEntries(user, IDC_COLOR), colors);
        EXPECT_EQ(user.Text(IDC_PAPER), L"A4");
        EXPECT_EQ(user.Text(IDC_QUALITY), L"200 x 200 dpi");
        EXPECT_EQ(user.Text(IDC_COLOR), L"Zebra");
        EXPECT_TRUE(user.Checked(IDC_LANDSCAPE));
        EXPECT_FALSE(user.Checked(IDC_PORTRAIT));
        for (const auto& [list, item] : lists) {
            user.SelectIndex(list, 1);
            EXPECT_EQ(host->session.Tree().Items()[item].Sel, 1);
        }
        EXPECT_FALSE(user.Visible(IDC_WIDTH));
    }});
}

TEST_F(DriverFeatures, FollowTheirControlsAndAreAnnounced) {
    const struct {
        Use use;
        const char* announced;
    } cases[] = {
        {{IDC_PAPER, kCustom}, "PaperSize=7 "},
        {{IDC_QUALITY, L"1200 x 1200 dpi"}, "Resolution=4 "},
        {{IDC_COLOR, L"256 colors"}, "TrueColor=0 ColorMode=1 "},
        {{IDC_COLOR, L"True color"}, "TrueColor=1 ColorMode=2 "},
        {{IDC_COLOR, L"Monochrome"}, "TrueColor=0 ColorMode=0 "},
        {{IDC_LANDSCAPE}, "Orientation=1 "},
        {{IDC_PORTRAIT}, "Orientation=0 "},
        {{IDC_MILLIMETERS}, "CustomUnit=1 "},
        {{IDC_TOP, L"2"}, ""},  // these are the writer's own
        {{IDC_OUTPUT_KZP}, ""},
        {{IDC_DISPLAY_IN_VIEWER}, ""},
    };
    Open({[&](SheetUser& user) {
        constexpr DWORD kHidden = OPTIF_HIDE | OPTIF_EXT_HIDE;
        const auto enablesApply = [&](const std::function<void()>& action) {
            EnableWindow(GetDlgItem(host->sheet.Window(), IDC_SHEET_APPLY), FALSE);
            action();
            return user.ApplyEnabled();
        };
        Announced();
        for (const auto& expected : cases) {
            const auto& [use, announced] = expected;
            SCOPED_TRACE(use.control);
            OPTITEM& orientation = *host->session.Tree().Find("Orientation");
            OPTITEM& fifth = host->session.Tree().Items()[4];
            orientation.Flags = fifth.Flags = kHidden;
            EXPECT_TRUE(enablesApply([&] { Do(user, {expected.use}); }));
            std::string told = Announced();
            // A button that gets the keyboard by the click may report it once for each.
            if (use.control == IDC_MILLIMETERS && told == std::string(announced) + announced)
                told = announced;
            EXPECT_EQ(told, announced);
            EXPECT_EQ(!(orientation.Flags & OPTIF_HIDE), told.starts_with("Orientation"));
            EXPECT_EQ(!(fifth.Flags & OPTIF_HIDE), told.starts_with("TrueColor"));
            EXPECT_TRUE(orientation.Flags & fifth.Flags & OPTIF_EXT_HIDE);
        }
        EXPECT_TRUE(enablesApply([&] { user.Spin(IDC_TOP_SPIN, true); }));
        EXPECT_FALSE(enablesApply([&] { SendMessageW(user.Find(IDC_QUALITY), CB_SHOWDROPDOWN, TRUE, 0); }));
    }});
}

TEST_F(DriverFeatures, AnythingStoredButANoShowsTheViewerAndOnlyTypeOneIsKzp) {
    const struct {
        const wchar_t *stored, *afterwards;
        int type;
    } cases[] = {{nullptr, L"YES", -1}, {L"maybe", L"YES", 1}, {L"no", L"no", 0}};
    for (const auto& expected : cases) {
        if (expected.stored)
            WriteText(HKEY_CURRENT_USER, kSettingsKey, L"LaunchKZPView", expected.stored);
        if (expected.type >= 0)
            WriteDword(HKEY_CURRENT_USER, kSettingsKey, L"OutputType", static_cast<DWORD>(expected.type));
        Open({[&](SheetUser& user) {
            EXPECT_EQ(Setting(L"LaunchKZPView")->Text(), expected.afterwards);
            EXPECT_EQ(user.Checked(IDC_DISPLAY_IN_VIEWER), expected.afterwards == std::wstring(L"YES"));
            EXPECT_EQ(user.Checked(IDC_OUTPUT_KZP), expected.type == 1) << expected.type;
            EXPECT_EQ(user.Checked(IDC_OUTPUT_KZPX), expected.type != 1) << expected.type;
        }});
    }
}

WINBOOL WINAPI LeaveAndSetText(HWND page, int control, LPCWSTR text) {
    NMHDR leaving = {page, 0, static_cast<UINT>(PSN_KILLACTIVE)};
    SendMessageW(page, WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&leaving));
    return SetDlgItemTextW(page, control, text);
}

// A record that an older version or another machine left behind.
TEST_F(DriverFeatures, MayComeWithWildMargins) {
    margins = {3.4e38f, -12.7f, HUGE_VALF, NAN};
    std::optional<ImportPatch> patch;
    beforeShow = [&] { patch.emplace(host->plugIn.Module(), "SetDlgItemTextW", AddressOf(LeaveAndSetText)); };
    Open({[&](SheetUser& user) {
        patch.reset();
        EXPECT_EQ(host->run.Boxes().size(), 2u)
            << "once for each round of visits, and never while it is filled";
        const Texts texts = EditTexts(user);
        EXPECT_EQ(Texts(texts.begin() + 2, texts.end()), (Texts{L"100.00", L"0.50", L"0.00", L"0.00"}));
        user.Type(IDC_LEFT, L"0");
    }});
}

// Uses everything that can be used; what is missing must neither crash nor be written beside its arrays.
void UseEverything(SheetUser& user) {
    for (const int list : {IDC_PAPER, IDC_QUALITY, IDC_COLOR}) {
        if (SendMessageW(user.Find(list), CB_GETCOUNT, 0, 0) > 0)
            user.SelectIndex(list, 0);
        SendMessageW(user.Sheet().PageWindow(kSettingsTab), WM_COMMAND, MAKEWPARAM(list, CBN_SELCHANGE), 0);
    }
    for (const int button : {IDC_MILLIMETERS, IDC_INCHES, IDC_LANDSCAPE, IDC_PORTRAIT, IDC_DISPLAY_IN_VIEWER,
                             IDC_OUTPUT_KZPX, IDC_OUTPUT_KZP})
        user.Click(button);
    user.Type(IDC_LEFT, L"1");
    user.Spin(IDC_LEFT_SPIN, true);
    EXPECT_EQ(user.Text(IDC_LEFT), L"1.05");
}

TEST_F(DriverFeatures, MayBeMissingFromTheEnd) {
    for (const DWORD items : {0u, 1u, 3u, 4u, 10u}) {
        options.firstItems = items;
        Open({UseEverything, [&](SheetUser& user) {
                  EXPECT_EQ(ListEntries(user, IDC_PAPER).size(), items > 0 ? 8u : 0u);
                  EXPECT_EQ(ListEntries(user, IDC_COLOR).size(), items > 3 ? 3u : 0u);
                  host->session.UIParam().cDrvOptItems = 0;
                  UseEverything(user);
              }});
    }
}

// Each feature lacks each of its parts once, each time beside another lack, and in no sheet two features lack
// the same. The user edits what there is, applies, and closes with OK.
TEST_F(DriverFeatures, AndAllElseMayLackParts) {
    const std::function<void(const char*)> parts[] = {
        [this](const char* keyword) { *tree.Find(keyword)->pOptType = {}; },
        [this](const char* keyword) { tree.Find(keyword)->pOptType = nullptr; },
        [this](const char* keyword) { tree.Find(keyword)->UserData = 0; },
        [this](const char* keyword) { tree.Remove(keyword); },
        [this](const char* keyword) { tree.Find(keyword)->Sel = 1000; },
        [this](const char* keyword) { tree.Find(keyword)->Sel = -1; },
    };
    const auto param = [this]() -> OEMCUIPPARAM& { return host->session.UIParam(); };
    const std::function<void()> lacks[] = {
        [&] { param().hOEMHeap = nullptr; },
        [&] { param().hPrinter = reinterpret_cast<HANDLE>(0x1230); },
        [&] { param().pOEMDM = nullptr; },
        [] {
            for (const wchar_t* const function :
                 {L"GetPrinterW", L"SetPrinterW", L"GetPrinterDataW", L"SetPrinterDataW", L"GetFormW",
                  L"AddFormW", L"SetFormW", L"GetPrinterDriverW", L"OpenPrinterW"})
                spooler::FailCall(function, ERROR_ACCESS_DENIED);
        },
        nullptr,
        [] { ScratchRegistry::RefuseUserKeys(); },  // for good
    };
    for (size_t sheet = 0; sheet < std::size(lacks); ++sheet) {
        SCOPED_TRACE(sheet);
        RegDeleteTreeW(HKEY_CURRENT_USER, kSettingsKey);
        size_t part = sheet;
        for (const char* keyword : {"PaperSize", "Resolution", "ColorMode", "Orientation", "CustomUnit"})
            parts[part++ % std::size(parts)](keyword);
        beforeShow = lacks[sheet];
        options.offersHelper = beforeShow != nullptr;
        Open({
            [&](SheetUser& user) {
                for (int tab = 0; tab < host->sheet.PageCount(); ++tab)
                    EXPECT_NE(host->sheet.PageWindow(tab), nullptr) << tab;
                UseEverything(user);
                user.Apply();
            },
            [&](SheetUser& user) {
                EXPECT_EQ(host->sheet.Applied(), 1);
                user.Ok();
            },
        });
        spooler::ClearFailures();
        const bool stored = sheet + 1 < std::size(lacks);
        EXPECT_EQ(Setting(L"OutputType").has_value(), stored);
        if (stored) {
            EXPECT_EQ(Setting(L"OutputType")->Dword(), 1u);
            EXPECT_EQ(Setting(L"LaunchKZPView")->Text(), L"NO");
        }
    }
}

}  // namespace
}  // namespace kzp::test
