// OK and Apply in the real sheet: what is written, in which order, and what the driver is answered.
#include <algorithm>
#include <cstdlib>

#include "tests/support/Files.h"
#include "tests/support/ImportPatch.h"
#include "tests/support/SheetTest.h"

namespace kzp::test {
namespace {

using driverhost::SheetUser;
using Lines = std::vector<std::wstring>;
namespace spooler = standins::spooler;

// Of the keys that the plug-in presses.
int g_tabPresses = 0;
int g_keysDown = 0;

void WINAPI CountKey(BYTE key, BYTE scan, DWORD flags, ULONG_PTR extra) {
    const bool down = !(flags & KEYEVENTF_KEYUP);
    g_keysDown += down ? 1 : -1;
    g_tabPresses += down && key == VK_TAB;
    keybd_event(key, scan, flags, extra);
}

// "LaunchKZPView=NO", "OutputType=2", "FONTLIST=", in one order with what the spooler is asked.
LSTATUS WINAPI NoteSetting(HKEY key, LPCWSTR name, DWORD reserved, DWORD type, const BYTE* data,
                           DWORD bytes) {
    std::wstring line = name + std::wstring(L"=");
    if (type == REG_SZ)
        line.append(reinterpret_cast<const wchar_t*>(data), bytes / sizeof(wchar_t));
    else if (type == REG_DWORD)
        line += std::to_wstring(*reinterpret_cast<const DWORD*>(data));
    spooler::Note(line);
    return RegSetValueExW(key, name, reserved, type, data, bytes);
}

void* __cdecl RefuseOnce(size_t bytes) {
    static int refusals = 1;
    return refusals-- > 0 ? nullptr : std::malloc(bytes);
}

struct CommitSheet : HostedSheet {
    explicit CommitSheet(driverhost::SheetOptions shape = {})
        : HostedSheet(driverhost::SessionOptions{.plugInItem = true}, shape) {
        g_keysDown = g_tabPresses = 0;
        spooler::StartLog();
    }
    ~CommitSheet() { EXPECT_EQ(0, g_keysDown) << "no key stays down"; }

    ImportPatch settings{plugIn.Module(), "RegSetValueExW", AddressOf(&NoteSetting)};
    ImportPatch keys{plugIn.Module(), "keybd_event", AddressOf(&CountKey)};
};

constexpr wchar_t kFormWritten[] = L"SetFormW User Defined";

using Commit = SheetTest;

TEST_F(Commit, WritesInItsOrder) {
    const std::wstring documents = DocumentsFolder();
    constexpr LONG kChanged = CPSUICB_ACTION_OPTIF_CHANGED;
    constexpr LONG kApplied = CPSUICB_ACTION_ITEMS_APPLIED;
    constexpr LONG kRefused = CPSUICB_ACTION_NO_APPLY_EXIT;
    const struct {
        int tab;
        std::vector<Use> uses;
        LONG answer;
        bool form;
        std::wstring view, folder, output;
    } cases[] = {
        {1, {{IDC_LEFT, L"0.5"}}, kChanged, false, L"YES", documents, L"2"},
        {1,
         {{IDC_PAPER, kCustom}, {IDC_WIDTH, L"9"}, {IDC_OUTPUT_KZP}},
         kApplied,
         true,
         L"YES",
         documents,
         L"1"},
        // The form is written only when its size differs.
        {1, {{IDC_DISPLAY_IN_VIEWER}}, kApplied, false, L"NO", documents, L"1"},
        // A refused commit keeps texts, record and form, but writes the rest.
        {1, {{IDC_LEFT, L"9"}, {IDC_OUTPUT_KZPX}}, kRefused, false, L"", L"", L"2"},
        {1, {{IDC_LEFT, L"0.5"}, {IDC_PAPER, L"Letter"}}, kChanged, false, L"NO", documents, L"2"},
        // A user location that was never picked leaves no folder. Only with the custom paper it becomes the
        // documents folder.
        {2, {{IDC_USER_LOCATION}}, kChanged, false, L"NO", L"", L"2"},
        {1, {{IDC_PAPER, kCustom}}, kApplied, false, L"NO", documents, L"2"},
    };
    CommitSheet host;
    for (const auto& expected : cases) {
        host.run.Add([&](SheetUser& user) { user.ClickTab(expected.tab); });
        host.run.Add([&](SheetUser& user) {
            Do(user, expected.uses);
            spooler::StartLog();
            user.Apply();
        });
        host.run.Add([&](SheetUser&) {
            SCOPED_TRACE(&expected - cases);
            Lines lines = {L"SetPrinterDataW BRMK_KZPWRITER_UI_VALUE"};
            if (expected.answer != kRefused)
                lines.insert(lines.end(), {L"LaunchKZPView=" + expected.view, L"PROMPTFILENAME=YES",
                                           L"PathDirs=", L"DefaultDir=" + expected.folder});
            if (expected.form)
                lines.emplace_back(kFormWritten);
            lines.insert(lines.end(),
                         {L"FONTLIST=", L"OutputType=" + expected.output, L"SetPrinterDataW KZP Margin"});
            Lines written = spooler::ReadLog();
            std::erase_if(written,
                          [](auto& line) { return line.starts_with(L"SetPrinterW"); });  // the driver
            EXPECT_EQ(lines, written);
            EXPECT_EQ(expected.answer, host.sheet.Answers().back());
            EXPECT_EQ(12.7f, RecordMargins(host.session)[0]);
        });
    }
    host.run.Show();
    EXPECT_EQ(std::size(cases), host.sheet.Answers().size());
}

TEST_F(Commit, OfARewrittenFormClosesASheetWithoutApplyByItsOwnEnter) {
    for (const bool refused : {true, false}) {
        CommitSheet host({.applyButton = false});
        if (refused)
            spooler::FailCall(L"SetFormW", ERROR_ACCESS_DENIED);
        host.run.Add([](SheetUser& user) { Do(user, {{IDC_PAPER, kCustom}, {IDC_WIDTH, L"9"}}); });
        host.run.Add([](SheetUser& user) { user.Ok(); });
        host.run.Add([](SheetUser&) { ADD_FAILURE() << "still open"; });
        EXPECT_EQ(CPSUI_OK, host.run.Show());
        spooler::ClearFailures();
        std::vector<LONG> answers = {CPSUICB_ACTION_NO_APPLY_EXIT, CPSUICB_ACTION_ITEMS_APPLIED};
        answers.erase(answers.begin(), answers.begin() + refused);
        EXPECT_EQ(answers, host.sheet.Answers()) << "refused " << refused;
        EXPECT_EQ(1, std::ranges::count(spooler::ReadLog(), kFormWritten));
    }
}

TEST_F(Commit, IsForApplyAloneAndKeepsTheSheetOpenWhereItGoesWrong) {
    CommitSheet host;
    host.session.PresentItems();
    spooler::StartLog();
    for (WORD reason = CPSUICB_REASON_APPLYNOW + 1; reason % 64 != CPSUICB_REASON_APPLYNOW; ++reason) {
        const HWND page = reason == CPSUICB_REASON_SETACTIVE ? nullptr : GetDesktopWindow();
        EXPECT_EQ(CPSUICB_ACTION_NONE, host.session.TellCallback(reason % 64, page)) << reason % 64;
    }
    EXPECT_EQ(Lines{}, spooler::ReadLog());
    host.session.UIParam().cOEMOptItems = 0;
    host.session.TellCallback(CPSUICB_REASON_APPLYNOW, nullptr);
    EXPECT_EQ(L"LaunchKZPView=", spooler::ReadLog().at(0)) << "there is no item of its own";
    const ImportPatch allocation(host.plugIn.Module(), "malloc", AddressOf(&RefuseOnce));
    EXPECT_EQ(CPSUICB_ACTION_NO_APPLY_EXIT, host.session.TellCallback(CPSUICB_REASON_APPLYNOW, nullptr));
}

TEST_F(Commit, IsPrimedOnceInEachSheet) {
    CommitSheet host;
    for (int sheetNumber = 1; sheetNumber <= 2; ++sheetNumber) {
        g_tabPresses = 0;
        driverhost::HostSheet sheet(host.session);
        driverhost::SheetRun run(sheet);
        // Each of the three pages finds a sheet that is not primed yet.
        run.Add([](SheetUser& user) {
            EXPECT_EQ(9, g_tabPresses);
            user.ClickTab(0);
        });
        run.Add([](SheetUser& user) { user.ClickTab(2); });
        run.Add([](SheetUser& user) { user.ClickTab(0); });
        run.Add([&](SheetUser&) { EXPECT_EQ(9, g_tabPresses) << sheetNumber; });
        run.Show();
    }
}

}  // namespace
}  // namespace kzp::test
