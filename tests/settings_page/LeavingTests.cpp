// Sizes and margins that do not go together: the message, and the way back to the page.
#include "resources/resource.h"
#include "tests/settings_page/SettingsPageTest.h"
#include "tests/support/ImportPatch.h"

namespace kzp::test {
namespace {

using driverhost::SheetUser;

class Leaving : public SettingsPageTest {
  protected:
    // Makes the page invalid or valid, clicks the last or the first tab, and looks where the sheet has come
    // to rest.
    void ExpectReturn(const std::function<void(SheetUser&)>& change, bool returns, bool first = false) {
        Open({
            [&](HostedSheet& host, SheetUser& user) {
                for (int page = 0; page < host.sheet.PageCount(); ++page)
                    EXPECT_NE(host.sheet.PageWindow(page), nullptr) << "was visited, though never shown";
                change(user);
                user.ClickTab(first ? 0 : host.sheet.PageCount() - 1);
            },
            [&](HostedSheet& host, SheetUser&) {
                const int page = host.sheet.PageCount() - 2;
                EXPECT_EQ(host.sheet.CurrentPage(), returns ? page : first ? 0 : page + 1);
                EXPECT_EQ(host.run.Boxes().size(), returns ? 1u : 0u);
                for (const auto& box : host.run.Boxes()) {
                    EXPECT_EQ(box.caption, host.plugIn.ResourceText(IDS_INVALID_SIZE_CAPTION));
                    EXPECT_EQ(box.text, host.plugIn.ResourceText(IDS_INVALID_SIZE_TEXT));
                }
            },
        });
    }
};

TEST_F(Leaving, WithMarginsThatTakeTheWholePaperComesBack) {
    for (const bool extraPage : {false, true}) {
        for (const bool first : {false, true}) {
            shape.extraFirstPage = extraPage;
            ExpectReturn([](SheetUser& user) { user.Type(IDC_LEFT, L"8.25"); }, true, first);
            ExpectReturn([](SheetUser& user) { user.Type(IDC_LEFT, L"8.24"); }, false, first);
        }
    }
}

TEST_F(Leaving, TurnsThePaperWithTheOrientation) {
    margins = {0, 0, 0, 0};
    ExpectReturn(
        [](SheetUser& user) {
            user.Type(IDC_LEFT, L"10");
            user.Click(IDC_LANDSCAPE);
        },
        false);
    ExpectReturn(
        [](SheetUser& user) {
            user.Type(IDC_TOP, L"9");
            user.Click(IDC_LANDSCAPE);
        },
        true);
    tree.Find("Orientation")->Sel = 1;
    ExpectReturn([](SheetUser& user) { user.Type(IDC_LEFT, L"10"); }, false);
}

TEST_F(Leaving, ForgetsAFormThatWasReplaced) {
    ExpectReturn(
        [](SheetUser& user) {
            user.Type(IDC_LEFT, L"9");  // too much for Letter
            user.Select(IDC_PAPER, L"Tabloid");
        },
        false);
    ExpectReturn(
        [](SheetUser& user) {
            user.Type(IDC_LEFT, L"7");
            user.Select(IDC_PAPER, L"A5");
        },
        true);
    ExpectReturn(
        [](SheetUser& user) {
            user.Type(IDC_LEFT, L"9");
            standins::spooler::FailCall(L"GetFormW", ERROR_FILE_NOT_FOUND);
            user.Select(IDC_PAPER, L"A5");  // of unknown size
            standins::spooler::ClearFailures();
        },
        false);
}

// The filter ends with "89"; a test of what an earlier pass left of the text would see 8.
TEST_F(Leaving, JudgesWhatTheEditShowsInTheEnd) {
    ExpectReturn([](SheetUser& user) { user.SetText(IDC_LEFT, L"8-a9"); }, true);
}

struct {
    HWND owner;
    UINT style;
} g_box;

int WINAPI NoteBox(HWND owner, LPCWSTR text, LPCWSTR caption, UINT style) {
    g_box = {owner, style};
    return MessageBoxW(owner, text, caption, style);
}

TEST_F(Leaving, MayGoOnOnceTheSizesAreRight) {
    Open({
        [](HostedSheet& host, SheetUser& user) {
            const ImportPatch patch(host.plugIn.Module(), "MessageBoxW", AddressOf(NoteBox));
            user.Type(IDC_LEFT, L"50");
            user.ClickTab(kOutputTab);
            EXPECT_EQ(g_box.style, UINT{MB_ICONEXCLAMATION});
            EXPECT_EQ(g_box.owner, host.sheet.Tabs());
        },
        [](HostedSheet& host, SheetUser& user) {
            EXPECT_EQ(host.sheet.CurrentPage(), kSettingsTab);
            EXPECT_EQ(user.Text(IDC_LEFT), L"50") << "what was typed is the user's to mend";
            user.Type(IDC_LEFT, L"0.5");
            user.ClickTab(kOutputTab);
        },
        [](HostedSheet& host, SheetUser&) {
            EXPECT_EQ(host.sheet.CurrentPage(), kOutputTab);
            EXPECT_EQ(host.run.Boxes().size(), 1u);
        },
    });
}

}  // namespace
}  // namespace kzp::test
