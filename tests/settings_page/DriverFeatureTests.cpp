// What the controls write into the driver, and what becomes of them when the driver offers less.
#include <cmath>
#include <optional>

#include "resources/resource.h"
#include "tests/settings_page/SettingsPageTest.h"
#include "tests/support/ImportPatch.h"

namespace kzp::test {
namespace {

using driverhost::SheetUser;
using DriverFeatures = SettingsPageTest;

std::string Announced(HostedSheet& host) {
    std::string all;
    for (const auto& call : host.session.Helper().Announcements())
        all += call.keyword + "=" + std::to_string(call.selection) + " ";
    host.session.Helper().Announcements().clear();
    return all;
}

TEST_F(DriverFeatures, FollowTheirControlsAndAreAnnounced) {
    tree.Find("Orientation")->Flags |= OPTIF_HIDE | OPTIF_EXT_HIDE;
    Open({[](HostedSheet& host, SheetUser& user) {
        Announced(host);
        user.Select(IDC_PAPER, L"A4");
        EXPECT_EQ(Announced(host), "PaperSize=5 ");
        user.SelectIndex(IDC_QUALITY, 4);
        EXPECT_EQ(Announced(host), "Resolution=4 ");
        user.Click(IDC_LANDSCAPE);
        EXPECT_EQ(Announced(host), "Orientation=1 ");
        EXPECT_EQ(host.session.Tree().Find("Orientation")->Flags & (OPTIF_HIDE | OPTIF_EXT_HIDE),
                  static_cast<DWORD>(OPTIF_EXT_HIDE));
        user.Click(IDC_PORTRAIT);
        EXPECT_EQ(Announced(host), "Orientation=0 ");
        user.Click(IDC_OUTPUT_KZP);
        user.Click(IDC_DISPLAY_IN_VIEWER);
        EXPECT_EQ(Announced(host), "") << "these are the writer's own";
    }});
}

TEST_F(DriverFeatures, ColourTakesTheFifthItemAlong) {
    Open({[](HostedSheet& host, SheetUser& user) {
        OPTITEM& fifth = host.session.Tree().Items()[4];
        Announced(host);
        for (const auto& [colour, expected] : {std::pair{1, "TrueColor=0 ColorMode=1 "},
                                               {2, "TrueColor=1 ColorMode=2 "},
                                               {0, "TrueColor=0 ColorMode=0 "}}) {
            fifth.Flags |= OPTIF_HIDE;
            user.SelectIndex(IDC_COLOR, colour);
            EXPECT_EQ(Announced(host), expected);
            EXPECT_FALSE(fifth.Flags & OPTIF_HIDE);
        }
    }});
}

TEST_F(DriverFeatures, AreFoundByTheBeginningOfTheirKeyword) {
    tree = driverhost::DriverTree();
    tree.Add({"PaperSizeOfTheTray", L"Paper", 0, TVOT_LISTBOX, {L"A4", L"A5"}, 1});
    tree.Add({"", L"Heading", DMPUB_NONE, TVOT_LISTBOX, {}});
    tree.Add({"Res", L"Not quite", 0, TVOT_LISTBOX, {L"wrong"}, 0});
    tree.Add({"Resolution", L"First", 0, TVOT_LISTBOX, {L"first"}, 0});
    tree.Add({"Resolution", L"Second", 0, TVOT_LISTBOX, {L"second"}, 0});
    tree.DropUserData("Res");
    Open({[](HostedSheet&, SheetUser& user) {
        EXPECT_EQ(user.Text(IDC_PAPER), L"A5");
        EXPECT_EQ(user.Text(IDC_QUALITY), L"first");
    }});
}

// Uses everything that can be used; what the driver lacks must neither crash nor write beside its arrays.
void UseEverything(HostedSheet& host, SheetUser& user) {
    for (const int list : {IDC_PAPER, IDC_QUALITY, IDC_COLOR}) {
        if (SendMessageW(user.Find(list), CB_GETCOUNT, 0, 0) > 0)
            user.SelectIndex(list, 0);
        SendMessageW(host.sheet.PageWindow(kSettingsTab), WM_COMMAND, MAKEWPARAM(list, CBN_SELCHANGE), 0);
    }
    for (const int button : {IDC_MILLIMETERS, IDC_INCHES, IDC_LANDSCAPE, IDC_PORTRAIT, IDC_DISPLAY_IN_VIEWER,
                             IDC_OUTPUT_KZP, IDC_OUTPUT_KZPX})
        user.Click(button);
    user.Type(IDC_LEFT, L"1");
    user.Spin(IDC_LEFT_SPIN, true);
    EXPECT_EQ(user.Text(IDC_LEFT), L"1.05");
}

TEST_F(DriverFeatures, MayBeMissingFromTheEnd) {
    for (DWORD items = 0; items <= 15; items += items < 5 ? 1 : 5) {
        options.firstItems = items;
        Open({UseEverything, [items](HostedSheet& host, SheetUser& user) {
                  EXPECT_EQ(SendMessageW(user.Find(IDC_PAPER), CB_GETCOUNT, 0, 0), items > 0 ? 8 : 0);
                  EXPECT_EQ(SendMessageW(user.Find(IDC_COLOR), CB_GETCOUNT, 0, 0), items > 3 ? 3 : 0);
                  host.sheet.Session().UIParam().cDrvOptItems = 0;
                  UseEverything(host, user);
              }});
    }
}

TEST_F(DriverFeatures, MayLackOptionsTypeUserDataOrASelection) {
    const std::vector<std::function<void(const char*)>> lacks = {
        [this](const char* keyword) { tree.DropOptions(keyword); },
        [this](const char* keyword) { tree.DropType(keyword); },
        [this](const char* keyword) { tree.DropUserData(keyword); },
        [this](const char* keyword) { tree.Remove(keyword); },
        [this](const char* keyword) { tree.Find(keyword)->Sel = 1000; },
        [this](const char* keyword) { tree.Find(keyword)->Sel = -1; },
    };
    // Each feature lacks each of them once, and in no sheet two features lack the same.
    for (size_t sheet = 0; sheet < lacks.size(); ++sheet) {
        SCOPED_TRACE(sheet);
        size_t lack = sheet;
        for (const char* keyword : {"PaperSize", "Resolution", "ColorMode", "Orientation", "CustomUnit"})
            lacks[lack++ % lacks.size()](keyword);
        Open({UseEverything});
    }
}

// As Windows does, a list takes no entry without a text.
LRESULT WINAPI RefuseMissingText(HWND page, int control, UINT message, WPARAM wParam, LPARAM lParam) {
    return message == CB_ADDSTRING && !lParam ? CB_ERR
                                              : SendDlgItemMessageW(page, control, message, wParam, lParam);
}

TEST_F(DriverFeatures, OptionsWithoutANameKeepTheirPlace) {
    const std::pair<const char*, int> lists[] = {
        {"PaperSize", IDC_PAPER}, {"Resolution", IDC_QUALITY}, {"ColorMode", IDC_COLOR}};
    for (const auto& [feature, list] : lists)
        tree.Find(feature)->pOptType->pOptParam[1].pData =
            list == IDC_QUALITY ? MAKEINTRESOURCEW(17) : nullptr;
    std::optional<ImportPatch> patch;
    beforeShow = [&](HostedSheet& host) {
        patch.emplace(host.plugIn.Module(), "SendDlgItemMessageW", AddressOf(RefuseMissingText));
    };
    Open({[&](HostedSheet& host, SheetUser& user) {
        patch.reset();
        for (const auto& [feature, list] : lists) {
            EXPECT_EQ(ListEntries(user, list)[1], L"") << feature;
            user.SelectIndex(list, 2);
            EXPECT_EQ(host.session.Tree().Find(feature)->Sel, 2);
        }
        user.SelectIndex(IDC_PAPER, 1);
        EXPECT_FALSE(user.Visible(IDC_WIDTH));
    }});
}

// A record that an older version or another machine left behind.
TEST_F(DriverFeatures, MayComeWithWildMargins) {
    margins = {3.4e38f, -12.7f, HUGE_VALF, NAN};
    Open({[](HostedSheet& host, SheetUser& user) {
        EXPECT_EQ(host.run.Boxes().size(), 2u) << "once for each round of visits";
        const Texts texts = EditTexts(user);
        EXPECT_EQ(Texts(texts.begin() + 2, texts.end()), (Texts{L"100.00", L"0.50", L"0.00", L"0.00"}));
        user.Type(IDC_LEFT, L"0");
    }});
}

}  // namespace
}  // namespace kzp::test
