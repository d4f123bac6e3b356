// Typing, spinning and switching units in the six number edits.
#include <windows.h>

#include <commctrl.h>

#include "resources/resource.h"
#include "tests/settings_page/SettingsPageTest.h"

namespace kzp::test {
namespace {

using driverhost::SheetUser;

class NumberEdits : public SettingsPageTest {
  protected:
    NumberEdits() { ChooseCustomPaper(); }

    static constexpr int kEdits[] = {IDC_WIDTH, IDC_HEIGHT, IDC_LEFT, IDC_TOP, IDC_RIGHT, IDC_BOTTOM};
    static constexpr int kSpins[] = {IDC_WIDTH_SPIN, IDC_HEIGHT_SPIN, IDC_LEFT_SPIN,
                                     IDC_TOP_SPIN,   IDC_RIGHT_SPIN,  IDC_BOTTOM_SPIN};
};

TEST_F(NumberEdits, KeepANumberWithinTheLimitHoweverTheTextArrives) {
    const struct {
        int unit;
        const wchar_t *text, *shown;
    } cases[] = {
        {IDC_INCHES, L"1-2a.3.4", L"12.34"}, {IDC_INCHES, L"..x5\x20AC,0\xFF11", L"50"},
        {IDC_INCHES, L"150", L"100"},        {IDC_INCHES, L"100", L"100"},
        {IDC_MILLIMETERS, L"150", L"150"},   {IDC_MILLIMETERS, L"2540.01", L"2540"},
    };
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
        for (const int edit : kEdits) {
            user.SetText(edit, std::wstring(3000, L'x') + L"7");
            EXPECT_EQ(user.Text(edit).find_first_not_of(L'7'), std::wstring::npos) << edit;
        }
        user.SetText(IDC_WIDTH, L"19");
        SendMessageW(user.Find(IDC_WIDTH), EM_SETSEL, 1, 1);
        for (const WPARAM character : {L'x', L'.', L'y', L'5'})
            SendMessageW(user.Find(IDC_WIDTH), WM_CHAR, character, 1);
        EXPECT_EQ(user.Text(IDC_WIDTH), L"1.59") << "the caret stays where the user types";
    }});
}

TEST_F(NumberEdits, StepByTheirOwnSpinButtons) {
    Open({[&](SheetUser& user) {
        for (size_t field = 0; field < std::size(kEdits); ++field) {
            user.Type(kEdits[field], L"8.5");
            Texts expected = EditTexts(user);
            user.Spin(kSpins[field], true);
            expected[field] = L"8.55";
            EXPECT_EQ(EditTexts(user), expected);
            user.Spin(kSpins[field], false, 2);
            expected[field] = L"8.45";
            EXPECT_EQ(EditTexts(user), expected);
        }
        user.SetText(IDC_WIDTH, L"99.98");
        user.Spin(IDC_WIDTH_SPIN, true);
        EXPECT_EQ(user.Text(IDC_WIDTH), L"100") << "the step runs into the limit";
        user.SetText(IDC_WIDTH, std::wstring(256, L'0') + L"5");
        user.Spin(IDC_WIDTH_SPIN, true);
        EXPECT_EQ(user.Text(IDC_WIDTH), L"0.05") << "a step reads 256 characters";

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

TEST_F(NumberEdits, ShowTheDriversUnitAndFollowItThereAndBack) {
    const int buttons[] = {IDC_INCHES, IDC_MILLIMETERS};
    const Texts shown[] = {{L"8.50", L"10.50", L"0.50", L"1.00", L"0.25", L"0.00"},
                           {L"215.90", L"266.70", L"12.70", L"25.40", L"6.35", L"0.00"}};
    // In the third, what the second sheet left must not be converted once more.
    for (const int first : {0, 1, 0}) {
        ChooseCustomPaper();
        tree.Find("CustomUnit")->Sel = first;
        Open({[&](SheetUser& user) {
            const auto expectUnit = [&](int unit) {
                EXPECT_EQ(EditTexts(user), shown[unit]);
                EXPECT_EQ(host->session.Tree().Find("CustomUnit")->Sel, unit);
                EXPECT_TRUE(user.Checked(buttons[unit]));
                EXPECT_FALSE(user.Checked(buttons[1 - unit]));
            };
            expectUnit(first);
            for (const int unit : {first, 1 - first, 1 - first, first}) {
                Announced();
                user.Click(buttons[unit]);
                expectUnit(unit);
                EXPECT_NE(Announced().find("CustomUnit=" + std::to_string(unit)), std::string::npos);
            }
            user.Click(IDC_INCHES);
            user.Type(IDC_WIDTH, L"100");
            user.Click(IDC_MILLIMETERS);
            EXPECT_EQ(user.Text(IDC_WIDTH), L"2540.00");
        }});
    }
}

// Margins that could not be shown go through as they were. The size is right in either unit.
TEST_F(NumberEdits, HaveNoUnitWhereTheDriverHasNone) {
    margins = {5, 6, 7, 8};  // not what hundredths of an inch can say
    for (const bool custom : {false, true}) {
        tree.Find("PaperSize")->Sel = 0;
        tree.Remove("CustomUnit");
        Open({
            [&](SheetUser& user) {
                user.Click(IDC_LANDSCAPE);
                if (custom)
                    Do(user, {{IDC_PAPER, kCustom}, {IDC_WIDTH, L"30"}, {IDC_HEIGHT, L"30"}});
                const Texts typed = EditTexts(user);
                EXPECT_EQ(typed[2], L"");
                Do(user, {{IDC_INCHES}, {IDC_MILLIMETERS}, {IDC_INCHES}});
                EXPECT_EQ(EditTexts(user), typed);
                user.Apply();
            },
            [&](SheetUser&) {
                EXPECT_EQ(host->sheet.Applied(), 1);
                EXPECT_EQ(RecordMargins(host->session), margins);
            },
        });
    }
}

}  // namespace
}  // namespace kzp::test
