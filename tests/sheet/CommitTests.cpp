// OK and Apply in the real sheet: what is written, in which order, and what the driver is answered.
#include <algorithm>

#include "tests/sheet/WriteTrace.h"
#include "tests/support/Files.h"
#include "tests/support/SheetTest.h"

namespace kzp::test {
namespace {

using driverhost::SheetUser;

// Of the keys that the plug-in presses.
int g_tabPresses = 0;
int g_keysDown = 0;

void WINAPI CountKey(BYTE key, BYTE scan, DWORD flags, ULONG_PTR extra) {
    const bool down = !(flags & KEYEVENTF_KEYUP);
    g_keysDown += down ? 1 : -1;
    g_tabPresses += down && key == VK_TAB;
    keybd_event(key, scan, flags, extra);
}

struct CommitSheet : HostedSheet {
    explicit CommitSheet(driverhost::SheetOptions shape = {})
        : HostedSheet(driverhost::SessionOptions{.plugInItem = true}, shape) {
        g_keysDown = g_tabPresses = 0;
    }
    ~CommitSheet() { EXPECT_EQ(0, g_keysDown) << "no key stays down"; }

    WriteTrace trace{plugIn.Module()};
    ImportPatch keys{plugIn.Module(), "keybd_event", AddressOf(&CountKey)};
};

using Commit = SheetTest;

TEST_F(Commit, WritesInItsOrder) {
    const std::wstring documents = DocumentsFolder();
    const struct {
        int tab;
        std::vector<Use> uses;
        LONG answer;
        std::wstring item, view, folder, form, output;
    } cases[] = {
        {1, {{IDC_LEFT, L"0.5"}}, CPSUICB_ACTION_OPTIF_CHANGED, L"0", L"YES", documents, L"", L"2"},
        {1,
         {{IDC_PAPER, kCustom},
          {IDC_MILLIMETERS},
          {IDC_WIDTH, L"100"},
          {IDC_HEIGHT, L"90.5"},
          {IDC_OUTPUT_KZP},
          {IDC_DISPLAY_IN_VIEWER}},
         CPSUICB_ACTION_ITEMS_APPLIED,
         L"0",
         L"NO",
         documents,
         L"form: User Defined=100.000x90.500",
         L"1"},
        // The form is written only when its size differs.
        {1, {{IDC_WIDTH, L"100"}}, CPSUICB_ACTION_ITEMS_APPLIED, L"0", L"NO", documents, L"", L"1"},
        // A refused commit keeps texts, record and form, but writes the rest.
        {1, {{IDC_LEFT, L"101"}, {IDC_OUTPUT_KZPX}}, CPSUICB_ACTION_NO_APPLY_EXIT, L"0", L"", L"", L"", L"2"},
        {1,
         {{IDC_LEFT, L"300"}, {IDC_PAPER, L"Letter"}},
         CPSUICB_ACTION_NO_APPLY_EXIT,
         L"0",
         L"",
         L"",
         L"",
         L"2"},
        {1, {{IDC_LEFT, L"12.7"}}, CPSUICB_ACTION_OPTIF_CHANGED, L"0", L"NO", documents, L"", L"2"},
        // A user location that was never picked leaves no folder. Only with the custom paper it becomes the
        // documents folder, and stays that.
        {2, {{IDC_USER_LOCATION}}, CPSUICB_ACTION_OPTIF_CHANGED, L"1", L"NO", L"", L"", L"2"},
        {1, {{IDC_PAPER, kCustom}}, CPSUICB_ACTION_ITEMS_APPLIED, L"1", L"NO", documents, L"", L"2"},
        {1, {{IDC_PAPER, L"Letter"}}, CPSUICB_ACTION_OPTIF_CHANGED, L"1", L"NO", documents, L"", L"2"},
    };
    CommitSheet host;
    size_t refused = 0;
    for (const auto& expected : cases) {
        host.run.Add([&](SheetUser& user) { user.ClickTab(expected.tab); });
        host.run.Add([&](SheetUser& user) {
            Do(user, expected.uses);
            WriteTrace::Take();
            user.Apply();
        });
        host.run.Add([&](SheetUser& user) {
            SCOPED_TRACE(&expected - cases);
            Lines lines = {L"printer: BRMK_KZPWRITER_UI_VALUE=" + expected.item};
            if (expected.answer == CPSUICB_ACTION_NO_APPLY_EXIT) {
                ++refused;
                EXPECT_EQ(expected.uses[0].text, user.Text(IDC_LEFT))
                    << "the sheet stays as the user left it";
            } else {
                lines.insert(lines.end(), {L"LaunchKZPView=" + expected.view, L"PROMPTFILENAME=YES",
                                           L"PathDirs=", L"DefaultDir=" + expected.folder});
            }
            if (!expected.form.empty())
                lines.push_back(expected.form);
            lines.insert(lines.end(), {L"FONTLIST=0 bytes", L"OutputType=" + expected.output,
                                       L"printer: KZP Margin=12.70 0.00 0.00 0.00"});
            EXPECT_EQ(lines, WriteTrace::Take());
            EXPECT_EQ(expected.answer, host.sheet.Answers().back());
            EXPECT_EQ(expected.tab, host.sheet.CurrentPage());
            EXPECT_EQ(refused, host.run.Boxes().size()) << "the page says so once each time";
        });
    }
    host.run.Show();
    EXPECT_EQ(std::size(cases), host.sheet.Answers().size());
    EXPECT_EQ(2, host.sheet.Refused());
}

TEST_F(Commit, OfARewrittenFormClosesASheetWithoutApplyByItsOwnEnter) {
    for (const bool refused : {true, false}) {
        CommitSheet host({.applyButton = false});
        if (refused)
            standins::spooler::FailCall(L"SetFormW", ERROR_ACCESS_DENIED);
        host.run.Add([](SheetUser& user) { Do(user, {{IDC_PAPER, kCustom}, {IDC_WIDTH, L"9"}}); });
        host.run.Add([](SheetUser& user) { user.Ok(); });
        host.run.Add([](SheetUser& user) { user.Sheet().Note(L"still open"); });
        EXPECT_EQ(CPSUI_OK, host.run.Show());
        standins::spooler::ClearFailures();
        std::vector<LONG> answers = {CPSUICB_ACTION_NO_APPLY_EXIT, CPSUICB_ACTION_ITEMS_APPLIED};
        answers.erase(answers.begin(), answers.begin() + refused);
        EXPECT_EQ(answers, host.sheet.Answers()) << "refused " << refused;
        EXPECT_EQ(1, std::ranges::count(WriteTrace::Take(), L"form: User Defined=228.600x266.700"));
    }
}

TEST_F(Commit, HasNoBusinessWithOtherReasons) {
    CommitSheet host;
    host.session.PresentItems();
    WriteTrace::Take();
    for (WORD reason = CPSUICB_REASON_APPLYNOW + 1; reason % 64 != CPSUICB_REASON_APPLYNOW; ++reason) {
        const HWND page = reason == CPSUICB_REASON_SETACTIVE ? nullptr : GetDesktopWindow();
        EXPECT_EQ(CPSUICB_ACTION_NONE, host.session.TellCallback(reason % 64, page)) << reason % 64;
    }
    OEMCUIPPARAM& param = host.session.UIParam();
    EXPECT_EQ(CPSUICB_ACTION_NONE, param.OEMCUIPCallback(nullptr, &param));
    CPSUICBPARAM apply = {};
    apply.Reason = CPSUICB_REASON_APPLYNOW;
    EXPECT_EQ(CPSUICB_ACTION_NONE, param.OEMCUIPCallback(&apply, nullptr));
    EXPECT_EQ(Lines{}, WriteTrace::Take());
    param.cOEMOptItems = 0;
    host.session.TellCallback(CPSUICB_REASON_APPLYNOW, nullptr);
    EXPECT_EQ(std::wstring::npos, WriteTrace::Take().at(0).find(L"printer:")) << "no item of its own";
}

TEST_F(Commit, IsPrimedOnceInEachSheet) {
    CommitSheet host;
    for (int sheetNumber = 1; sheetNumber <= 2; ++sheetNumber) {
        SCOPED_TRACE(sheetNumber);
        g_tabPresses = 0;
        driverhost::HostSheet sheet(host.session);
        driverhost::SheetRun run(sheet);
        HWND first = nullptr;
        const auto nextDialog = [&sheet](HWND behind) {
            return FindWindowExW(sheet.PageWindow(0), behind, L"#32770", nullptr);
        };
        run.Add([&](SheetUser& user) {
            // Each of the three pages finds a sheet that is not primed yet.
            EXPECT_EQ(9, g_tabPresses);
            first = nextDialog(nullptr);
            EXPECT_NE(nullptr, first);
            user.ClickTab(0);
        });
        run.Add([](SheetUser& user) { user.ClickTab(2); });
        run.Add([](SheetUser& user) { user.ClickTab(0); });
        run.Add([&](SheetUser&) {
            EXPECT_EQ(9, g_tabPresses);
            EXPECT_EQ(first, nextDialog(nullptr));
            EXPECT_EQ(nullptr, nextDialog(first));
        });
        run.Show();
    }
}

}  // namespace
}  // namespace kzp::test
