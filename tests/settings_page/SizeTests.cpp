// The six number edits, where the user types, spins and switches units; selecting a paper, which hides the
// row with width and height; sizes and margins that do not go together: the message, and the way back to the
// page; and the user's own size in the spooler.
#include <windows.h>

#include <commctrl.h>

#include <cwchar>
#include <map>

#include "pages/settings/PaperForms.h"
#include "resources/resource.h"
#include "settings/SpoolerForms.h"
#include "tests/settings_page/SettingsPageTest.h"
#include "tests/support/ImportPatch.h"

namespace kzp::test {
namespace {

using driverhost::SheetUser;
using NumberEdits = SettingsPageTest;
using Paper = SettingsPageTest;

TEST_F(NumberEdits, KeepANumberWithinTheLimitHoweverItArrives) {
    const struct {
        int unit;
        const wchar_t *text, *shown;
    } cases[] = {
        {IDC_INCHES, L"1-2a.3.4", L"12.34"}, {IDC_INCHES, L"..x5\x20AC,0\xFF11", L"50"},
        {IDC_INCHES, L"150", L"100"},        {IDC_INCHES, L"100", L"100"},
        {IDC_MILLIMETERS, L"150", L"150"},   {IDC_MILLIMETERS, L"2540.01", L"2540"},
    };
    ChooseCustomPaper();
    Open({[&](SheetUser& user) {
        for (const auto& [unit, text, shown] : cases) {
            user.Click(unit);
            for (const int edit : kEdits) {
                user.Type(edit, text);
                EXPECT_EQ(user.Text(edit), shown) << edit;
                user.SetText(edit, text);
                EXPECT_EQ(user.Text(edit), shown) << edit;
            }
        }
        user.SetText(IDC_WIDTH, L"19");
        SendMessageW(user.Find(IDC_WIDTH), EM_SETSEL, 1, 1);
        for (const WPARAM character : {L'x', L'.', L'y', L'5'})
            SendMessageW(user.Find(IDC_WIDTH), WM_CHAR, character, 1);
        EXPECT_EQ(user.Text(IDC_WIDTH), L"1.59") << "the caret stays where the user types";

        user.Click(IDC_INCHES);
        user.SetText(IDC_WIDTH, L"99.98");
        user.Spin(IDC_WIDTH_SPIN, true);
        EXPECT_EQ(user.Text(IDC_WIDTH), L"100");

        // A button that is held down reports longer and longer steps; they repeat the last direction.
        user.Type(IDC_LEFT, L"1");
        for (const auto& [step, shown] :
             {std::pair{-1, L"1.05"}, {-5, L"1.10"}, {5, L"1.15"}, {1, L"1.10"}, {-20, L"1.05"}}) {
            NMUPDOWN change = {};
            change.hdr = {user.Find(IDC_LEFT_SPIN), IDC_LEFT_SPIN, static_cast<UINT>(UDN_DELTAPOS)};
            change.iDelta = step;
            SendMessageW(host->sheet.PageWindow(kSettingsTab), WM_NOTIFY, IDC_LEFT_SPIN,
                         reinterpret_cast<LPARAM>(&change));
            EXPECT_EQ(user.Text(IDC_LEFT), shown) << step;
        }
    }});
}

// Where the ANSI code page is UTF-8, which takes no flags.
int WINAPI ConvertToUtf8(UINT, DWORD flags, LPCWSTR text, int characters, LPSTR ansi, int bytes,
                         LPCSTR lacking, LPBOOL lacked) {
    return flags ? 0 : WideCharToMultiByte(CP_UTF8, 0, text, characters, ansi, bytes, lacking, lacked);
}

// The size of the form and the margins of the record.
TEST_F(NumberEdits, ShowTheDriversUnitAndFollowItThereAndBack) {
    const int buttons[] = {IDC_INCHES, IDC_MILLIMETERS};
    const Texts shown[] = {{L"8.50", L"10.50", L"0.50", L"1.00", L"0.25", L"0.00"},
                           {L"215.90", L"266.70", L"12.70", L"25.40", L"6.35", L"0.00"}};
    // In the third, what the second sheet left must not be converted once more.
    for (const int first : {0, 1, 0}) {
        ChooseCustomPaper();
        tree.Find("CustomUnit")->Sel = first;
        Open({[&](SheetUser& user) {
            EXPECT_EQ(EditTexts(user), shown[first]);
            for (const int unit : {first, 1 - first, 1 - first, first}) {
                user.Click(buttons[unit]);
                EXPECT_EQ(EditTexts(user), shown[unit]);
                EXPECT_TRUE(user.Checked(buttons[unit]));
                EXPECT_EQ(host->session.Tree().Find("CustomUnit")->Sel, unit);
            }
            const ImportPatch utf8(host->plugIn.Module(), "WideCharToMultiByte", AddressOf(ConvertToUtf8));
            user.Click(IDC_INCHES);
            user.Type(IDC_WIDTH, L"100");
            user.Click(IDC_MILLIMETERS);
            EXPECT_EQ(user.Text(IDC_WIDTH), L"2540.00");
        }});
    }
}

TEST_F(Paper, OfAStandardSizeHidesTheRowAndAllBelowMovesUpByIt) {
    std::map<int, RECT> places;
    const auto expectRow = [&](SheetUser& user, bool shown) {
        EXPECT_EQ(user.Visible(IDC_WIDTH), shown);
        const int gap = shown ? 0 : places[IDC_MARGIN_LABEL].top - places[IDC_WIDTH_LABEL].top;
        for (auto [control, expected] : places) {
            RECT now = {};
            GetWindowRect(user.Find(control), &now);
            if (control >= IDC_MOVING_FIRST && control <= IDC_MOVING_LAST)
                OffsetRect(&expected, 0, -gap);
            EXPECT_TRUE(EqualRect(&now, &expected)) << control << ": " << now.top;
        }
    };
    ChooseCustomPaper();
    Open({[&](SheetUser& user) {
        for (const HWND control : driverhost::Descendants(host->sheet.PageWindow(kSettingsTab)))
            GetWindowRect(control, &places[GetDlgCtrlID(control)]);
        for (const wchar_t* const standard : {L"A4", L"Tabloid"}) {
            user.Select(IDC_PAPER, standard);
            expectRow(user, false);
        }
        user.Type(IDC_LEFT, L"0.5");  // comes back formatted
        user.Select(IDC_PAPER, kCustom);
        expectRow(user, true);
        EXPECT_EQ(EditTexts(user), (Texts{L"8.50", L"10.50", L"0.50", L"1.00", L"0.25", L"0.00"}));
    }});
}

// Letter with a right margin of a quarter of an inch, in a sheet of three tabs, and in one of four that opens
// in landscape.
TEST_F(Paper, ThatDoesNotFitBringsTheUserBackToThePage) {
    const struct {
        std::vector<Use> uses;
        bool returns[2];
    } cases[] = {
        {{{IDC_LEFT, L"10"}}, {true, false}},
        {{{IDC_PORTRAIT}, {IDC_LEFT, L"8.25"}}, {true, true}},
        {{{IDC_LEFT, L"8.24"}}, {false, false}},
        // The filter ends with "89"; a test of what an earlier pass left of the text would see 8.
        {{{IDC_LEFT, L"8-a9"}}, {true, true}},
        {{{IDC_LEFT, L"10"}, {IDC_LANDSCAPE}}, {false, false}},
        {{{IDC_TOP, L"9"}}, {true, true}},
        {{{IDC_LEFT, L"7"}, {IDC_PORTRAIT}}, {false, false}},
        {{{IDC_TOP, L"1"}, {IDC_PAPER, L"A5"}}, {true, true}},
        {{{IDC_PAPER, L"Poster"}}, {false, false}},  // of unknown size
    };
    for (const bool four : {false, true}) {
        shape.extraFirstPage = four;
        tree.Find("Orientation")->Sel = four;
        tree.Find("PaperSize")->pOptType->pOptParam[3].pData = const_cast<PWSTR>(L"Poster");
        size_t boxes = 0;
        Texts typed;
        int tab = 0;
        std::vector<driverhost::SheetStep> steps;
        for (const auto& expected : cases) {
            steps.push_back([&](SheetUser& user) {
                boxes = host->run.Boxes().size();
                Do(user, expected.uses);
                typed = EditTexts(user);
                tab = tab == 0 ? host->sheet.PageCount() - 1 : 0;
                user.ClickTab(tab);
            });
            steps.push_back([&, back = expected.returns[four]](SheetUser& user) {
                SCOPED_TRACE(testing::Message() << "four tabs " << four << ", case " << &expected - cases);
                const int page = host->sheet.PageCount() - 2;
                EXPECT_EQ(host->sheet.CurrentPage(), back ? page : tab);
                EXPECT_EQ(host->run.Boxes().size(), boxes + back);
                EXPECT_EQ(EditTexts(user), typed) << "what was typed is the user's to mend";
                if (!back)
                    user.ClickTab(page);
            });
        }
        steps.push_back([&](SheetUser& user) {
            Do(user, {{IDC_LEFT, L"0"}, {IDC_PAPER, kCustom}, {IDC_WIDTH, L"0.5"}});
            boxes = host->run.Boxes().size();
            user.Apply();
        });
        // On a sheet with further tabs a refused apply makes the page lose the front once more; that is not
        // worth a second message.
        for (const size_t more : {1u, four ? 1u : 2u, four ? 2u : 3u}) {
            steps.push_back([&, more](SheetUser& user) {
                EXPECT_EQ(host->run.Boxes().size(), boxes + more);
                const driverhost::SeenBox& box = host->run.Boxes().back();
                EXPECT_EQ(box.caption, host->plugIn.ResourceText(IDS_INVALID_SIZE_CAPTION));
                EXPECT_EQ(box.text, host->plugIn.ResourceText(IDS_INVALID_SIZE_TEXT));
                EXPECT_EQ(box.owner, host->sheet.Window());
                EXPECT_EQ(host->sheet.CurrentPage(), host->sheet.PageCount() - 2);
                user.ClickTab(host->sheet.PageCount() - 1);
            });
        }
        Open(steps);
    }
}

TEST_F(Paper, OfTheUsersOwnSizeIsRewrittenOnlyWithAnotherSize) {
    const struct {
        const wchar_t *width, *height;
        DWORD unit;
        SIZEL stored = {215900, 266700};
    } cases[] = {
        {L"8.50", L"10.50", kInches},
        {L"215.9", L"266.70", kMillimeters},
        {L"215.9", L"100", kMillimeters, {215900, 100000}},
        {L"1.02", L"82.53", kInches, {25907, 2096261}},  // in single precision, cut
    };
    HostedSheet hosted;
    hosted.session.PresentItems();
    OEMCUIPPARAM& param = hosted.session.UIParam();
    hosted.session.Tree().Find("PaperSize")->Sel = 7;
    PageMeasureState typed;
    for (const auto& [width, height, unit, expected] : cases) {
        std::wcscpy(typed.widthText, width);
        std::wcscpy(typed.heightText, height);
        typed.unit = unit;
        EXPECT_EQ(CommitCustomForm(typed, param) != 0, expected.cy != 266700) << width;
        const SIZEL stored = ReadFormSize(param.hPrinter, kCustomFormName).value_or(SIZEL{});
        EXPECT_EQ(std::pair(stored.cx, stored.cy), std::pair(expected.cx, expected.cy)) << width;
    }
    typed.unit = kMillimeters;
    param.cDrvOptItems = 0;
    EXPECT_EQ(CommitCustomForm(typed, param), 0);
}

}  // namespace
}  // namespace kzp::test
