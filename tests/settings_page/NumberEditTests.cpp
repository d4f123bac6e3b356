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

TEST_F(NumberEdits, KeepDigitsAndOnePointHoweverTheTextArrives) {
    Open({[](HostedSheet&, SheetUser& user) {
        for (const int edit : kEdits) {
            user.Type(edit, L"1-2a.3.4");
            EXPECT_EQ(user.Text(edit), L"12.34") << edit;
            user.SetText(edit, L"..x5\x20AC,0\xFF11");
            EXPECT_EQ(user.Text(edit), L"50") << edit;
            user.SetText(edit, std::wstring(3000, L'x') + L"7");
            EXPECT_EQ(user.Text(edit).find_first_not_of(L'7'), std::wstring::npos) << edit;
        }
    }});
}

TEST_F(NumberEdits, KeepTheCaretWhereTheUserTypes) {
    Open({[](HostedSheet&, SheetUser& user) {
        user.SetText(IDC_WIDTH, L"19");
        const HWND edit = user.Find(IDC_WIDTH);
        SendMessageW(edit, EM_SETSEL, 1, 1);
        for (const wchar_t character : {L'x', L'.', L'y', L'5'})
            SendMessageW(edit, WM_CHAR, static_cast<WPARAM>(character), 1);
        EXPECT_EQ(user.Text(IDC_WIDTH), L"1.59");
    }});
}

TEST_F(NumberEdits, AreLimitedInTheUnitShown) {
    Open({[](HostedSheet&, SheetUser& user) {
        for (const int edit : kEdits) {
            user.Type(edit, L"150");
            EXPECT_EQ(user.Text(edit), L"100") << edit;
            user.Type(edit, L"100");
            EXPECT_EQ(user.Text(edit), L"100") << edit;
        }
        user.Click(IDC_MILLIMETERS);
        for (const int edit : kEdits) {
            user.Type(edit, L"2540.01");
            EXPECT_EQ(user.Text(edit), L"2540") << edit;
            user.Type(edit, L"150");
            EXPECT_EQ(user.Text(edit), L"150") << edit;
        }
    }});
}

TEST_F(NumberEdits, StepByTheirOwnSpinButtons) {
    Open({[](HostedSheet&, SheetUser& user) {
        for (size_t field = 0; field < std::size(kEdits); ++field) {
            user.Type(kEdits[field], L"8.5");
            const Texts before = EditTexts(user);
            user.Spin(kSpins[field], true);
            Texts expected = before;
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
    }});
}

// A button that is held down reports longer and longer steps.
TEST_F(NumberEdits, LongerStepsRepeatTheLastDirection) {
    Open({[](HostedSheet& host, SheetUser& user) {
        const auto step = [&](int delta) {
            NMUPDOWN change = {};
            change.hdr = {user.Find(IDC_LEFT_SPIN), IDC_LEFT_SPIN, static_cast<UINT>(UDN_DELTAPOS)};
            change.iDelta = delta;
            SendMessageW(host.sheet.PageWindow(kSettingsTab), WM_NOTIFY, IDC_LEFT_SPIN,
                         reinterpret_cast<LPARAM>(&change));
            return user.Text(IDC_LEFT);
        };
        user.Type(IDC_LEFT, L"1");
        EXPECT_EQ(step(-1), L"1.05");
        EXPECT_EQ(step(-5), L"1.10");
        EXPECT_EQ(step(5), L"1.15");
        EXPECT_EQ(step(1), L"1.10");
        EXPECT_EQ(step(-20), L"1.05");
    }});
}

TEST_F(NumberEdits, FollowTheUnitThereAndBack) {
    Open({[](HostedSheet& host, SheetUser& user) {
        const OPTITEM* const unit = host.session.Tree().Find("CustomUnit");
        const Texts inches = EditTexts(user);
        for (int round = 0; round < 3; ++round) {
            user.Click(IDC_MILLIMETERS);
            EXPECT_EQ(EditTexts(user), (Texts{L"215.90", L"266.70", L"12.70", L"25.40", L"6.35", L"0.00"}));
            EXPECT_EQ(unit->Sel, 1);
            user.Click(IDC_MILLIMETERS);  // nothing to convert
            user.Click(IDC_INCHES);
            EXPECT_EQ(EditTexts(user), inches);
            EXPECT_EQ(unit->Sel, 0);
        }
        EXPECT_EQ(host.session.Helper().Announcements().back().keyword, "CustomUnit");
        user.Type(IDC_WIDTH, L"100");
        user.Click(IDC_MILLIMETERS);
        EXPECT_EQ(user.Text(IDC_WIDTH), L"2540.00");
    }});
}

TEST_F(NumberEdits, StayAsTheyAreWhenTheDriverHasNoUnit) {
    tree.Remove("CustomUnit");
    Open({[](HostedSheet&, SheetUser& user) {
        for (const int edit : kEdits)
            user.Type(edit, L"20");
        user.Click(IDC_INCHES);
        user.Click(IDC_MILLIMETERS);
        user.Click(IDC_INCHES);
        EXPECT_EQ(EditTexts(user), Texts(6, L"20"));
    }});
}

TEST_F(NumberEdits, EnableApply) {
    Open({[](HostedSheet& host, SheetUser& user) {
        const auto enables = [&](const std::function<void()>& action) {
            EnableWindow(GetDlgItem(host.sheet.Window(), IDC_SHEET_APPLY), FALSE);
            action();
            return user.ApplyEnabled();
        };
        EXPECT_TRUE(enables([&] { user.Type(IDC_TOP, L"2"); }));
        EXPECT_TRUE(enables([&] { user.Spin(IDC_TOP_SPIN, true); }));
        EXPECT_TRUE(enables([&] { user.Click(IDC_MILLIMETERS); }));
        EXPECT_TRUE(enables([&] { user.Click(IDC_OUTPUT_KZP); }));
        EXPECT_TRUE(enables([&] { user.SelectIndex(IDC_QUALITY, 0); }));
        EXPECT_TRUE(enables([&] { user.Select(IDC_PAPER, L"A4"); }));
        EXPECT_FALSE(enables([&] { SendMessageW(user.Find(IDC_QUALITY), CB_SHOWDROPDOWN, TRUE, 0); }));
    }});
}

}  // namespace
}  // namespace kzp::test
