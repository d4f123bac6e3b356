// OK and Apply in the real sheet: what is written, in which order, and what the driver is answered.
#include <algorithm>

#include "resources/resource.h"
#include "tests/sheet/WriteTrace.h"
#include "tests/support/Files.h"
#include "tests/support/SheetTest.h"

namespace kzp::test {
namespace {

using driverhost::SheetUser;
using Lines = std::vector<std::wstring>;

constexpr wchar_t kLetter[] = L"Letter";
constexpr wchar_t kCustom[] = L"User-defined size";

// Of the keys that the plug-in presses.
int g_tabPresses = 0;
int g_keysDown = 0;

void WINAPI CountKey(BYTE key, BYTE scan, DWORD flags, ULONG_PTR extra) {
    const bool down = !(flags & KEYEVENTF_KEYUP);
    g_keysDown += down ? 1 : -1;
    g_tabPresses += down && key == VK_TAB;
    keybd_event(key, scan, flags, extra);
}

class Commit : public SheetTest {
  protected:
    explicit Commit(driverhost::SheetOptions shape = {}, driverhost::SessionOptions options = {})
        : host(std::move(options), shape), trace(host.plugIn.Module()) {
        EXPECT_EQ(0.0f, RecordMargins(host.session)[0]);
        g_keysDown = 0;
    }
    ~Commit() override { EXPECT_EQ(0, g_keysDown) << "no key stays down"; }

    // One action of the user and the next, and what each of them had the plug-in write.
    void Do(const std::function<void(SheetUser&)>& action) {
        host.run.Add([action](SheetUser& user) {
            WriteTrace::Take();
            action(user);
        });
        host.run.Add([this](SheetUser&) { written.push_back(WriteTrace::Take()); });
    }
    void Prepare(std::function<void(SheetUser&)> action) { host.run.Add(std::move(action)); }

    std::vector<LONG> Answers() const {
        std::vector<LONG> answers;
        for (const auto& call : host.sheet.Callbacks()) {
            if (call.reason == CPSUICB_REASON_APPLYNOW)
                answers.push_back(call.answer);
        }
        return answers;
    }

    HostedSheet host;
    WriteTrace trace;
    ImportPatch keys{host.plugIn.Module(), "keybd_event", AddressOf(&CountKey)};
    std::vector<Lines> written;
    const std::wstring documents = DocumentsFolder();
};

struct CommitWithoutApply : Commit {
    CommitWithoutApply() : Commit({.applyButton = false}) {}

    void TypeWidthAndClose() {
        Prepare([](SheetUser& user) {
            user.Select(IDC_PAPER, kCustom);
            user.Type(IDC_WIDTH, L"9");
        });
        Prepare([](SheetUser& user) { user.Ok(); });
        Prepare([](SheetUser& user) { user.Sheet().Note(L"still open"); });
        EXPECT_EQ(CPSUI_OK, host.run.Show());
    }
};

struct CommitWithItem : Commit {
    CommitWithItem() : Commit({}, {.plugInItem = true}) {}
};

void Apply(SheetUser& user) {
    user.Apply();
}

TEST_F(Commit, WritesInItsOrder) {
    Prepare([](SheetUser& user) { user.Type(IDC_LEFT, L"0.5"); });
    Do(Apply);
    Prepare([](SheetUser& user) {
        user.Select(IDC_PAPER, kCustom);
        user.Click(IDC_MILLIMETERS);
        user.Type(IDC_WIDTH, L"100");
        user.Type(IDC_HEIGHT, L"90.5");
        user.Click(IDC_OUTPUT_KZP);
        user.Click(IDC_DISPLAY_IN_VIEWER);
    });
    Do(Apply);
    Prepare([](SheetUser& user) { user.Type(IDC_WIDTH, L"100"); });
    Do(Apply);
    host.run.Show();
    ASSERT_EQ(3u, written.size());
    EXPECT_EQ((Lines{L"LaunchKZPView=YES", L"PROMPTFILENAME=YES", L"PathDirs=", L"DefaultDir=" + documents,
                     L"FONTLIST=0 bytes", L"OutputType=2", L"printer: KZP Margin=12.70 0.00 0.00 0.00"}),
              written[0])
        << "a standard paper";
    EXPECT_EQ((Lines{L"LaunchKZPView=NO", L"PROMPTFILENAME=YES", L"PathDirs=", L"DefaultDir=" + documents,
                     L"form: User Defined=100.000x90.500", L"FONTLIST=0 bytes", L"OutputType=1",
                     L"printer: KZP Margin=12.70 0.00 0.00 0.00"}),
              written[1])
        << "the custom paper";
    written[1].erase(written[1].begin() + 4);
    EXPECT_EQ(written[1], written[2]) << "the form only when its size differs";
    EXPECT_EQ((std::vector<LONG>{CPSUICB_ACTION_OPTIF_CHANGED, CPSUICB_ACTION_ITEMS_APPLIED,
                                 CPSUICB_ACTION_ITEMS_APPLIED}),
              Answers());
}

TEST_F(Commit, RefusedKeepsTextsRecordAndFormButWritesTheRest) {
    for (const wchar_t* const paper : {kLetter, kCustom}) {
        Prepare([paper](SheetUser& user) {
            user.Select(IDC_PAPER, paper);
            user.Type(IDC_LEFT, L"9");
            user.Click(IDC_OUTPUT_KZP);
            user.Click(IDC_DISPLAY_IN_VIEWER);
        });
        Do(Apply);
    }
    Prepare([this](SheetUser& user) {
        EXPECT_EQ(1, host.sheet.CurrentPage());
        EXPECT_EQ(L"9", user.Text(IDC_LEFT)) << "the sheet stays as the user left it";
    });
    host.run.Show();
    ASSERT_EQ(2u, written.size());
    for (const Lines& lines : written)
        EXPECT_EQ((Lines{L"FONTLIST=0 bytes", L"OutputType=1", L"printer: KZP Margin=0.00 0.00 0.00 0.00"}),
                  lines);
    EXPECT_EQ(std::vector<LONG>(2, CPSUICB_ACTION_NO_APPLY_EXIT), Answers());
    EXPECT_EQ(2, host.sheet.Refused());
    EXPECT_EQ(2u, host.run.Boxes().size()) << "the page says so once each time";
}

// A user location that was never picked leaves no folder. Only with the custom paper it becomes the documents
// folder, and stays that.
TEST_F(CommitWithItem, AnEmptyFolderIsFilledInForTheCustomPaperOnly) {
    Prepare([](SheetUser& user) { user.Click(IDC_USER_LOCATION); });
    host.run.AddNext({[](SheetUser& user) { user.ClickTab(2); }});
    Do(Apply);
    Prepare([](SheetUser& user) { user.ClickTab(1); });
    Prepare([](SheetUser& user) { user.Select(IDC_PAPER, kCustom); });
    Do(Apply);
    Prepare([](SheetUser& user) { user.Select(IDC_PAPER, kLetter); });
    Do(Apply);
    host.run.Show();
    ASSERT_EQ(3u, written.size());
    EXPECT_EQ(L"printer: BRMK_KZPWRITER_UI_VALUE=1", written[0][0]);
    EXPECT_EQ(L"DefaultDir=", written[0][4]);
    EXPECT_EQ(L"DefaultDir=" + documents, written[1][4]);
    EXPECT_EQ(L"DefaultDir=" + documents, written[2][4]);
}

TEST_F(CommitWithoutApply, ARewrittenFormClosesTheSheetByItsOwnEnter) {
    TypeWidthAndClose();
    EXPECT_EQ((std::vector<LONG>{CPSUICB_ACTION_NO_APPLY_EXIT, CPSUICB_ACTION_ITEMS_APPLIED}), Answers());
    EXPECT_EQ(1, std::ranges::count(WriteTrace::Take(), L"form: User Defined=228.600x266.700"));
}

TEST_F(CommitWithoutApply, ARefusedFormLetsItCloseAtOnce) {
    standins::spooler::FailCall(L"SetFormW", ERROR_ACCESS_DENIED);
    TypeWidthAndClose();
    standins::spooler::ClearFailures();
    EXPECT_EQ(std::vector<LONG>{CPSUICB_ACTION_ITEMS_APPLIED}, Answers());
}

TEST_F(Commit, OtherReasonsAreNotItsBusiness) {
    host.session.PresentItems();
    WriteTrace::Take();
    for (WORD reason = 0; reason < 64; ++reason) {
        if (reason == CPSUICB_REASON_APPLYNOW || reason == CPSUICB_REASON_SETACTIVE)
            continue;
        EXPECT_EQ(CPSUICB_ACTION_NONE, host.session.TellCallback(reason, GetDesktopWindow())) << reason;
    }
    EXPECT_EQ(CPSUICB_ACTION_NONE, host.session.TellCallback(CPSUICB_REASON_SETACTIVE, nullptr))
        << "nothing to embed into";
    const OEMCUIPCALLBACK callback = host.session.UIParam().OEMCUIPCallback;
    EXPECT_EQ(CPSUICB_ACTION_NONE, callback(nullptr, &host.session.UIParam()));
    CPSUICBPARAM apply = {};
    apply.Reason = CPSUICB_REASON_APPLYNOW;
    EXPECT_EQ(CPSUICB_ACTION_NONE, callback(&apply, nullptr));
    EXPECT_EQ(Lines{}, WriteTrace::Take());
    OPTITEM behind = {};
    host.session.UIParam().pOEMOptItems = &behind;
    host.session.UIParam().cOEMOptItems = 0;
    host.session.TellCallback(CPSUICB_REASON_APPLYNOW, nullptr);
    EXPECT_EQ(std::wstring::npos, WriteTrace::Take().at(0).find(L"printer:")) << "no item of its own";
}

TEST_F(Commit, ASheetIsPrimedOnceAndSoIsTheNext) {
    for (int sheetNumber = 1; sheetNumber <= 2; ++sheetNumber) {
        SCOPED_TRACE(sheetNumber);
        g_tabPresses = 0;
        driverhost::HostSheet sheet(host.session);
        driverhost::SheetRun run(sheet);
        const auto dialog = [&sheet] {
            return FindWindowExW(sheet.PageWindow(0), nullptr, L"#32770", nullptr);
        };
        HWND first = nullptr;
        run.Add([&](SheetUser& user) {
            // Each of the three pages finds a sheet that is not primed yet.
            EXPECT_EQ(9, g_tabPresses);
            first = dialog();
            EXPECT_NE(nullptr, first);
            user.ClickTab(0);
        });
        run.Add([](SheetUser& user) { user.ClickTab(2); });
        run.Add([](SheetUser& user) { user.ClickTab(0); });
        run.Add([&](SheetUser& user) {
            EXPECT_EQ(9, g_tabPresses);
            EXPECT_EQ(first, dialog());
            EXPECT_EQ(nullptr, FindWindowExW(user.Sheet().PageWindow(0), first, L"#32770", nullptr));
        });
        run.Show();
    }
}

}  // namespace
}  // namespace kzp::test
