// Selecting a paper, which hides the row with width and height; and sizes and margins that do not go
// together: the message, and the way back to the page.
#include <map>

#include "resources/resource.h"
#include "settings/SpoolerForms.h"
#include "tests/settings_page/SettingsPageTest.h"
#include "tests/support/ImportPatch.h"

namespace kzp::test {
namespace {

using driverhost::SheetUser;
using Paper = SettingsPageTest;

TEST_F(Paper, OfAStandardSizeHidesTheRowAndAllBelowMovesUpByIt) {
    constexpr int kRow[] = {IDC_WIDTH_LABEL,  IDC_WIDTH,  IDC_WIDTH_SPIN,
                            IDC_HEIGHT_LABEL, IDC_HEIGHT, IDC_HEIGHT_SPIN};
    std::map<int, RECT> moving;
    std::map<int, RECT> still;
    const auto expect = [&](SheetUser& user, bool row) {
        for (const int control : kRow)
            EXPECT_EQ(user.Visible(control), row) << control;
        const auto expectPlaces = [&](std::map<int, RECT>& places, int shift) {
            for (auto [control, expected] : places) {
                RECT now = {};
                GetWindowRect(user.Find(control), &now);
                OffsetRect(&expected, 0, shift);
                EXPECT_TRUE(EqualRect(&now, &expected)) << control << ": " << now.top;
            }
        };
        expectPlaces(still, 0);
        expectPlaces(moving, row ? 0 : still[IDC_WIDTH_LABEL].top - moving[IDC_MARGIN_LABEL].top);
    };
    ChooseCustomPaper();
    Open({
        [&](SheetUser& user) {
            for (int control = IDC_MOVING_FIRST; control <= IDC_MOVING_LAST; ++control) {
                if (user.Find(control))
                    GetWindowRect(user.Find(control), &moving[control]);
            }
            for (const int control : {IDC_PAPER, IDC_PAPER_LABEL, IDC_WIDTH_LABEL, IDC_HELP_SETTINGS})
                GetWindowRect(user.Find(control), &still[control]);
            EXPECT_GE(moving.size(), 25u);
            EXPECT_GT(moving[IDC_MARGIN_LABEL].top, still[IDC_WIDTH_LABEL].top + 10);
            expect(user, true);
            for (const wchar_t* const standard : {L"A4", L"Tabloid"}) {
                user.Select(IDC_PAPER, standard);
                expect(user, false);
            }
        },
        [&](SheetUser& user) {
            user.Type(IDC_LEFT, L"0.5");  // comes back formatted
            user.Select(IDC_PAPER, kCustom);
            expect(user, true);
            EXPECT_EQ(EditTexts(user), (Texts{L"8.50", L"10.50", L"0.50", L"1.00", L"0.25", L"0.00"}));
        },
    });
}

struct {
    HWND owner;
    UINT style;
} g_box;

int WINAPI NoteBox(HWND owner, LPCWSTR text, LPCWSTR caption, UINT style) {
    g_box = {owner, style};
    return MessageBoxW(owner, text, caption, style);
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
        {{{IDC_LEFT, L"9"}, {IDC_PAPER, L"Tabloid"}}, {false, false}},
    };
    for (const bool four : {false, true}) {
        shape.extraFirstPage = four;
        tree.Find("Orientation")->Sel = four;
        tree.Find("PaperSize")->pOptType->pOptParam[3].pData = const_cast<PWSTR>(L"Poster");
        size_t boxes = 0;
        Texts typed;
        std::vector<driverhost::SheetStep> steps;
        bool first = true;
        for (const auto& expected : cases) {
            first = !first;
            steps.push_back([&, first](SheetUser& user) {
                boxes = host->run.Boxes().size();
                Do(user, expected.uses);
                typed = EditTexts(user);
                const ImportPatch patch(host->plugIn.Module(), "MessageBoxW", AddressOf(NoteBox));
                user.ClickTab(first ? 0 : host->sheet.PageCount() - 1);
            });
            steps.push_back([&, first, back = expected.returns[four]](SheetUser& user) {
                SCOPED_TRACE(testing::Message() << "four tabs " << four << ", first " << first);
                const int last = host->sheet.PageCount() - 1;
                EXPECT_EQ(host->sheet.CurrentPage(), back ? last - 1 : first ? 0 : last);
                EXPECT_EQ(host->run.Boxes().size(), boxes + back);
                EXPECT_EQ(EditTexts(user), typed) << "what was typed is the user's to mend";
                if (!back)
                    user.ClickTab(last - 1);
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
                EXPECT_EQ(g_box.owner, host->sheet.Tabs());
                EXPECT_EQ(g_box.style, UINT{MB_ICONEXCLAMATION});
                EXPECT_EQ(host->sheet.CurrentPage(), host->sheet.PageCount() - 2);
                EXPECT_EQ(host->sheet.Refused(), 1);
                EXPECT_EQ(RecordMargins(host->session), margins);
                EXPECT_EQ(ReadFormSize(host->session.Printer(), kCustomFormName)->cx, 215900);
                user.ClickTab(host->sheet.PageCount() - 1);
            });
        }
        Open(steps);
    }
}

}  // namespace
}  // namespace kzp::test
