// The pages by keyboard alone: the Tab key reaches every control in reading order, and each does its work.
// The keys are posted to whatever has the focus, and reach it through the sheet's own message loop.
#include <gtest/gtest.h>
#include <windows.h>

#include <commctrl.h>

#include "resources/resource.h"
#include "tests/support/SheetTest.h"

namespace kzp::test {
namespace {

using driverhost::SheetUser;

constexpr int kTabControl = 12320;

void Press(WPARAM key) {
    PostMessageW(GetFocus(), WM_KEYDOWN, key, 1);
    PostMessageW(GetFocus(), WM_KEYUP, key, static_cast<LPARAM>(0xC0000001));
}

class Keyboard : public SheetTest {
  protected:
    void Do(std::function<void(SheetUser&)> step) { host.run.Add(std::move(step)); }

    // Where the Tab key stops: from the tabs once around the sheet.
    void ExpectTabOrder(int page, std::vector<int> controls) {
        Do([page](SheetUser& user) { user.ClickTab(page); });
        controls.insert(controls.end(), {IDOK, IDCANCEL, IDC_SHEET_APPLY, kTabControl});
        Do([controls](SheetUser& user) {
            std::vector<int> stops;
            HWND stop = user.Sheet().Tabs();
            do {
                stop = GetNextDlgTabItem(user.Sheet().Window(), stop, FALSE);
                stops.push_back(GetDlgCtrlID(stop));
            } while (stop != user.Sheet().Tabs() && stops.size() < 30);
            EXPECT_EQ(controls, stops);
        });
    }

    HostedSheet host;
};

TEST_F(Keyboard, WorksEveryControlOfTheSettingsPage) {
    Do([](SheetUser& user) { user.SelectIndex(IDC_PAPER, 0); });
    ExpectTabOrder(1, {IDC_PAPER, IDC_LEFT, IDC_RIGHT, IDC_TOP, IDC_BOTTOM, IDC_INCHES, IDC_PORTRAIT,
                       IDC_QUALITY, IDC_COLOR, IDC_OUTPUT_KZPX, IDC_DISPLAY_IN_VIEWER, IDC_HELP_SETTINGS});
    Do([](SheetUser& user) {
        SetFocus(user.Find(IDC_PAPER));
        Press(VK_END);
    });
    Do([](SheetUser& user) { EXPECT_TRUE(user.Visible(IDC_WIDTH)); });
    ExpectTabOrder(
        1, {IDC_PAPER, IDC_WIDTH, IDC_HEIGHT, IDC_LEFT, IDC_RIGHT, IDC_TOP, IDC_BOTTOM, IDC_INCHES,
            IDC_PORTRAIT, IDC_QUALITY, IDC_COLOR, IDC_OUTPUT_KZPX, IDC_DISPLAY_IN_VIEWER, IDC_HELP_SETTINGS});
    for (const int edit : {IDC_WIDTH, IDC_HEIGHT, IDC_LEFT, IDC_RIGHT, IDC_TOP, IDC_BOTTOM}) {
        Do([edit](SheetUser& user) {
            user.Type(edit, L"2");
            Press(VK_UP);
            Press(VK_UP);
            Press(VK_DOWN);
        });
        Do([edit](SheetUser& user) { EXPECT_EQ(L"2.05", user.Text(edit)) << edit; });
    }
    Do([](SheetUser& user) {
        SetFocus(user.Find(IDC_OUTPUT_KZPX));
        Press(VK_DOWN);
    });
    for (const wchar_t letter : {L'm', L'l'})
        Do([letter](SheetUser&) { PostMessageW(GetFocus(), WM_SYSCHAR, letter, 0x20000001); });
    Do([](SheetUser& user) {
        for (const auto& [chosen, other] : {std::pair{IDC_OUTPUT_KZP, IDC_OUTPUT_KZPX},
                                            {IDC_MILLIMETERS, IDC_INCHES},
                                            {IDC_LANDSCAPE, IDC_PORTRAIT}})
            EXPECT_TRUE(user.Checked(chosen) && !user.Checked(other)) << "in each set of options " << chosen;
        EXPECT_EQ(L"52.07", user.Text(IDC_LEFT));
        SetFocus(user.Find(IDC_DISPLAY_IN_VIEWER));
        Press(VK_SPACE);
    });
    Do([](SheetUser& user) { EXPECT_FALSE(user.Checked(IDC_DISPLAY_IN_VIEWER)); });
    host.run.Show();
}

TEST_F(Keyboard, WorksEveryControlOfTheOutputPageAndTheFontsDialog) {
    WriteText(HKEY_CURRENT_USER, kSettingsKey, L"DefaultDir", L"C:\\windows");
    ExpectTabOrder(2, {IDC_USER_LOCATION, IDC_FOLDER, IDC_BROWSE, IDC_PROMPT_FILE_NAME, IDC_HELP_OUTPUT});
    for (const int chosen : {IDC_DOCUMENTS_LOCATION, IDC_USER_LOCATION, IDC_DOCUMENTS_LOCATION}) {
        Do([](SheetUser& user) {
            SetFocus(user.Find(user.Checked(IDC_USER_LOCATION) ? IDC_USER_LOCATION : IDC_DOCUMENTS_LOCATION));
            Press(VK_DOWN);
        });
        Do([chosen](SheetUser& user) {
            EXPECT_TRUE(user.Checked(chosen)) << "the hidden option is passed over";
        });
    }
    ExpectTabOrder(2, {IDC_DOCUMENTS_LOCATION, IDC_PROMPT_FILE_NAME, IDC_HELP_OUTPUT});

    ExpectTabOrder(0, {IDC_FONTS_NONE, IDC_HELP_ADVANCED});
    Do([](SheetUser& user) {
        SetFocus(user.Find(IDC_FONTS_NONE));
        Press(VK_DOWN);
    });
    ExpectTabOrder(0, {IDC_FONTS_SELECT, IDC_FONT_LIST, IDC_HELP_ADVANCED});
    Do([](SheetUser& user) {
        SetFocus(user.Find(IDC_FONT_LIST));
        Press(VK_HOME);
        Press(VK_SPACE);
    });
    Do([](SheetUser& user) { EXPECT_EQ(1u, ListView_GetCheckState(user.Find(IDC_FONT_LIST), 0)); });
    host.run.Show();
}

}  // namespace
}  // namespace kzp::test
