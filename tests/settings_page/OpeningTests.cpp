// What the page shows when it opens: the driver's features, the record's margins, the form, the store.
#include "resources/resource.h"
#include "tests/settings_page/SettingsPageTest.h"

namespace kzp::test {
namespace {

using driverhost::SheetUser;
using Opening = SettingsPageTest;

TEST_F(Opening, ListsTheDriversOptionsInItsOrderAndSelectsItsChoices) {
    tree = driverhost::DriverTree();
    tree.Add(
        {"PaperSize", L"Paper", 0, TVOT_LISTBOX, {L"Tabloid", L"A4", L"User Defined", L"User Defined 2"}, 1});
    tree.Add({"Resolution", L"Quality", 0, TVOT_LISTBOX, {L"1200 x 1200 dpi", L"200 x 200 dpi"}, 1});
    tree.Add({"ColorMode", L"Color", 0, TVOT_LISTBOX, {L"Zebra", L"Monochrome"}, 0});
    tree.Add({"Orientation", L"Orientation", 0, TVOT_2STATES, {L"Portrait", L"Landscape"}, 1});
    Open({[](HostedSheet& host, SheetUser& user) {
        EXPECT_EQ(host.sheet.CurrentPage(), kSettingsTab);
        EXPECT_EQ(ListEntries(user, IDC_PAPER),
                  (Texts{L"Tabloid", L"A4", host.plugIn.ResourceText(IDS_CUSTOM_PAPER), L"User Defined 2"}));
        EXPECT_EQ(user.Text(IDC_PAPER), L"A4");
        EXPECT_EQ(ListEntries(user, IDC_QUALITY), (Texts{L"1200 x 1200 dpi", L"200 x 200 dpi"}));
        EXPECT_EQ(user.Text(IDC_QUALITY), L"200 x 200 dpi");
        EXPECT_EQ(ListEntries(user, IDC_COLOR), (Texts{L"Zebra", L"Monochrome"}));
        EXPECT_EQ(user.Text(IDC_COLOR), L"Zebra");
        EXPECT_TRUE(user.Checked(IDC_LANDSCAPE));
        EXPECT_FALSE(user.Checked(IDC_PORTRAIT));
        // The driver is told of the colour mode once, so that it brings its own items in line.
        const auto& announced = host.session.Helper().Announcements();
        ASSERT_EQ(announced.size(), 1u);
        EXPECT_EQ(announced[0].keyword, "ColorMode");
        EXPECT_TRUE(announced[0].rightSheet);
        EXPECT_EQ(announced[0].mode, OEMCUIP_DOCPROP);
    }});
}

TEST_F(Opening, ShowsFormAndMarginsInTheDriversUnit) {
    // In the third, what the second sheet left must not be converted once more.
    for (const bool millimeters : {false, true, false}) {
        ChooseCustomPaper();
        if (millimeters)
            ChooseMillimeters();
        Open({[millimeters](HostedSheet&, SheetUser& user) {
            EXPECT_EQ(user.Checked(IDC_MILLIMETERS), millimeters);
            EXPECT_EQ(user.Checked(IDC_INCHES), !millimeters);
            EXPECT_EQ(EditTexts(user),
                      millimeters ? (Texts{L"215.90", L"266.70", L"12.70", L"25.40", L"6.35", L"0.00"})
                                  : (Texts{L"8.50", L"10.50", L"0.50", L"1.00", L"0.25", L"0.00"}));
            EXPECT_TRUE(user.Visible(IDC_WIDTH));
        }});
    }
}

TEST_F(Opening, TakesAnythingButANoAsYesForTheViewerAndOnlyTypeOneAsKzp) {
    const struct {
        const wchar_t *stored, *afterwards;
        bool view;
        int type;
    } cases[] = {{nullptr, L"YES", true, -1},
                 {L"maybe", L"YES", true, 0},
                 {L"y", L"YES", true, 1},
                 {L"no", L"no", false, 2}};
    for (const auto& c : cases) {
        if (c.stored)
            WriteText(HKEY_CURRENT_USER, kSettingsKey, L"LaunchKZPView", c.stored);
        if (c.type >= 0)
            WriteDword(HKEY_CURRENT_USER, kSettingsKey, L"OutputType", static_cast<DWORD>(c.type));
        Open({[&c](HostedSheet&, SheetUser& user) {
            EXPECT_EQ(user.Checked(IDC_DISPLAY_IN_VIEWER), c.view);
            EXPECT_EQ(Setting(L"LaunchKZPView")->Text(), c.afterwards);
            EXPECT_EQ(user.Checked(IDC_OUTPUT_KZP), c.type == 1) << c.type;
            EXPECT_EQ(user.Checked(IDC_OUTPUT_KZPX), c.type != 1) << c.type;
        }});
    }
}

}  // namespace
}  // namespace kzp::test
