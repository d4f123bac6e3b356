// What the page hands over when the sheet is applied, and how it goes on after a refusal.
#include <cstring>

#include "core/KZPPrivateDevMode.h"
#include "resources/resource.h"
#include "settings/SpoolerForms.h"
#include "tests/settings_page/SettingsPageTest.h"

namespace kzp::test {
namespace {

using driverhost::SheetUser;

using Applying = SettingsPageTest;

TEST_F(Applying, LeavesMarginsThatCouldNotBeShownAsTheyWere) {
    margins = {5, 6, 7, 8};  // not what hundredths of an inch can say
    for (const bool custom : {false, true}) {
        tree.Remove("CustomUnit");
        Open({
            [custom](HostedSheet& host, SheetUser& user) {
                user.Click(IDC_LANDSCAPE);
                if (custom) {
                    user.Select(IDC_PAPER, host.plugIn.ResourceText(IDS_CUSTOM_PAPER));
                    user.Type(IDC_WIDTH, L"9");
                    user.Type(IDC_HEIGHT, L"9");
                }
                EXPECT_EQ(user.Text(IDC_LEFT), L"");
                user.Apply();
            },
            [this](HostedSheet& host, SheetUser&) {
                EXPECT_EQ(host.sheet.Applied(), 1);
                EXPECT_EQ(RecordMargins(host.session), margins);
            },
        });
    }
}

// On a sheet with further tabs a refused apply makes the page lose the front once more; that is not worth a
// second message.
TEST_F(Applying, ARefusalIsRepeatedOrSkippedOnceByTheNumberOfTabs) {
    for (const bool extraPage : {false, true}) {
        shape.extraFirstPage = extraPage;
        ChooseCustomPaper();
        const auto expectBoxes = [extraPage](HostedSheet& host, size_t three, size_t four) {
            EXPECT_EQ(host.run.Boxes().size(), extraPage ? four : three);
            EXPECT_EQ(host.sheet.CurrentPage(), host.sheet.PageCount() - 2);
        };
        Open({
            [](HostedSheet&, SheetUser& user) {
                user.Type(IDC_WIDTH, L"0.5");
                user.Apply();
            },
            [&](HostedSheet& host, SheetUser& user) {
                EXPECT_EQ(host.sheet.Refused(), 1);
                EXPECT_EQ(RecordMargins(host.session), margins);
                EXPECT_EQ(ReadFormSize(host.session.Printer(), kCustomFormName)->cx, 215900);
                expectBoxes(host, 1, 1);
                user.ClickTab(host.sheet.PageCount() - 1);
            },
            [&](HostedSheet& host, SheetUser& user) {
                expectBoxes(host, 2, 1);
                user.ClickTab(host.sheet.PageCount() - 1);
            },
            [&](HostedSheet& host, SheetUser&) { expectBoxes(host, 3, 2); },
        });
    }
}

}  // namespace
}  // namespace kzp::test
