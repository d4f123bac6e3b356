// The pages by keyboard alone: the Tab key stops at every control in reading order, and the arrow keys step
// the number edits, whose keys reach them through the sheet's own message loop.
#include "resources/resource.h"
#include "tests/support/SheetTest.h"

namespace kzp::test {
namespace {

using driverhost::SheetUser;

// From the tabs once around the sheet.
driverhost::SheetStep ExpectStops(std::vector<int> controls) {
    controls.insert(controls.end(), {IDOK, IDCANCEL, IDC_SHEET_APPLY, 12320});  // the tabs
    return [controls](SheetUser& user) {
        std::vector<int> stops;
        HWND stop = user.Sheet().Tabs();
        do {
            stop = GetNextDlgTabItem(user.Sheet().Window(), stop, FALSE);
            stops.push_back(GetDlgCtrlID(stop));
        } while (stop != user.Sheet().Tabs() && stops.size() < 30);
        EXPECT_EQ(controls, stops);
    };
}

using Keyboard = SheetTest;

TEST_F(Keyboard, WorksEveryPage) {
    WriteText(HKEY_CURRENT_USER, kSettingsKey, L"DefaultDir", L"C:\\windows");
    HostedSheet host;
    host.run.Add([](SheetUser& user) { user.ClickTab(2); });
    host.run.Add(
        ExpectStops({IDC_USER_LOCATION, IDC_FOLDER, IDC_BROWSE, IDC_PROMPT_FILE_NAME, IDC_HELP_OUTPUT}));
    host.run.Add([](SheetUser& user) { user.ClickTab(0); });
    host.run.Add([](SheetUser& user) { user.Click(IDC_FONTS_SELECT); });
    host.run.Add(ExpectStops({IDC_FONTS_SELECT, IDC_FONT_LIST, IDC_HELP_ADVANCED}));
    host.run.Add([](SheetUser& user) { user.ClickTab(1); });
    host.run.Add([](SheetUser& user) { user.Select(IDC_PAPER, kCustom); });
    host.run.Add(ExpectStops({IDC_PAPER, IDC_WIDTH, IDC_HEIGHT, IDC_LEFT, IDC_RIGHT, IDC_TOP, IDC_BOTTOM,
                              IDC_INCHES, IDC_PORTRAIT, IDC_QUALITY, IDC_COLOR, IDC_OUTPUT_KZPX,
                              IDC_DISPLAY_IN_VIEWER, IDC_HELP_SETTINGS}));
    for (const int edit : {IDC_WIDTH, IDC_HEIGHT, IDC_LEFT, IDC_RIGHT, IDC_TOP, IDC_BOTTOM}) {
        host.run.Add([edit](SheetUser& user) {
            user.SetText(edit, L"2");
            PostMessageW(GetFocus(), WM_KEYDOWN, VK_UP, 1);
        });
        host.run.Add([edit](SheetUser& user) { EXPECT_EQ(L"2.05", user.Text(edit)) << edit; });
    }
    host.run.Show();
}

}  // namespace
}  // namespace kzp::test
