// Selecting a paper: the row with width and height, and what moves when it hides.
#include <map>

#include "resources/resource.h"
#include "tests/settings_page/SettingsPageTest.h"

namespace kzp::test {
namespace {

using driverhost::SheetUser;
using Paper = SettingsPageTest;

RECT PlaceOf(SheetUser& user, int control) {
    RECT place = {};
    GetWindowRect(user.Find(control), &place);
    return place;
}

constexpr int kRow[] = {IDC_WIDTH_LABEL,  IDC_WIDTH,  IDC_WIDTH_SPIN,
                        IDC_HEIGHT_LABEL, IDC_HEIGHT, IDC_HEIGHT_SPIN};
constexpr int kStill[] = {IDC_PAPER, IDC_PAPER_LABEL, IDC_WIDTH_LABEL, IDC_HELP_SETTINGS};

void ExpectRow(SheetUser& user, bool visible) {
    for (const int control : kRow)
        EXPECT_EQ(user.Visible(control), visible) << control;
}

TEST_F(Paper, StandardSizesHideTheRowAndAllBelowMovesUpByIt) {
    ChooseCustomPaper();
    std::map<int, RECT> withRow;
    int rowHeight = 0;
    const auto expectShift = [&](SheetUser& user, int shift) {
        for (auto& [control, place] : withRow) {
            RECT expected = place;
            OffsetRect(&expected, 0, shift);
            const RECT now = PlaceOf(user, control);
            EXPECT_TRUE(EqualRect(&now, &expected))
                << control << ": " << now.top << " instead of " << expected.top;
        }
    };
    Open({
        [&](HostedSheet&, SheetUser& user) {
            ExpectRow(user, true);
            for (int control = IDC_MOVING_FIRST; control <= IDC_MOVING_LAST; ++control) {
                if (user.Find(control))
                    withRow[control] = PlaceOf(user, control);
            }
            EXPECT_GE(withRow.size(), 25u);
            rowHeight = PlaceOf(user, IDC_MARGIN_LABEL).top - PlaceOf(user, IDC_WIDTH_LABEL).top;
            EXPECT_GT(rowHeight, 10);
            std::map<int, RECT> still;
            for (const int control : kStill)
                still[control] = PlaceOf(user, control);
            // A second standard size must not move anything further.
            for (const wchar_t* standard : {L"A4", L"Tabloid"}) {
                user.Select(IDC_PAPER, standard);
                ExpectRow(user, false);
                expectShift(user, -rowHeight);
            }
            for (auto& [control, place] : still) {
                const RECT now = PlaceOf(user, control);
                EXPECT_TRUE(EqualRect(&now, &place)) << control;
            }
        },
        [&](HostedSheet& host, SheetUser& user) {
            user.Type(IDC_LEFT, L"0.5");  // comes back formatted
            user.Select(IDC_PAPER, host.plugIn.ResourceText(IDS_CUSTOM_PAPER));
            ExpectRow(user, true);
            expectShift(user, 0);
            EXPECT_EQ(EditTexts(user), (Texts{L"8.50", L"10.50", L"0.50", L"1.00", L"0.25", L"0.00"}));
        },
    });
}

}  // namespace
}  // namespace kzp::test
