// Typing, spinning and switching units in the six number edits.
#include <windows.h>

#include <commctrl.h>

#include "resources/resource.h"
#include "tests/settings_page/SettingsPageTest.h"
#include "tests/support/ImportPatch.h"

namespace kzp::test {
namespace {

using driverhost::SheetUser;

using NumberEdits = SettingsPageTest;

TEST_F(NumberEdits, KeepANumberWithinTheLimitHoweverTheTextArrives) {
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
    }});
}

TEST_F(NumberEdits, StepIntoTheLimitAndOnWhileTheirSpinButtonIsHeldDown) {
    ChooseCustomPaper();
    Open({[&](SheetUser& user) {
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
                Announced();
                user.Click(buttons[unit]);
                EXPECT_EQ(EditTexts(user), shown[unit]);
                EXPECT_TRUE(user.Checked(buttons[unit]));
                EXPECT_FALSE(user.Checked(buttons[1 - unit]));
                EXPECT_NE(Announced().find("CustomUnit=" + std::to_string(unit)), std::string::npos);
            }
            const ImportPatch utf8(host->plugIn.Module(), "WideCharToMultiByte", AddressOf(ConvertToUtf8));
            user.Click(IDC_INCHES);
            user.Type(IDC_WIDTH, L"100");
            user.Click(IDC_MILLIMETERS);
            EXPECT_EQ(user.Text(IDC_WIDTH), L"2540.00");
        }});
    }
}

}  // namespace
}  // namespace kzp::test
