// A process ended in the middle of a commit: every value that it stored is as one commit wrote it, never a
// piece, never a mixture within itself, and a fresh sheet opens.
#include <algorithm>

#include "resources/resource.h"
#include "settings/SettingsStore.h"
#include "support/Spooler.h"
#include "tests/support/ProgramCopy.h"
#include "tools/stress/Stage.h"

namespace kzp::stress {
namespace {

using driverhost::SheetUser;
using test::ProgramCopy;

constexpr size_t kFontRecord = 64;

UniqueKernelHandle CommittedEvent(DWORD owner) {
    return UniqueKernelHandle(
        CreateEventW(nullptr, FALSE, FALSE, (L"KZP stress commits " + std::to_wstring(owner)).c_str()));
}

void ExpectWholeValues() {
    const auto value = [](const wchar_t* name) {
        return test::ReadValue(HKEY_CURRENT_USER, test::kSettingsKey, name);
    };
    for (const wchar_t* const name : {kLaunchView, kPromptFileName}) {
        const auto text = value(name);
        const bool whole = !text || std::ranges::any_of(std::array{L"", L"YES", L"NO", L"No"},
                                                        [&](auto* one) { return text->Text() == one; });
        EXPECT_TRUE(whole) << text->Text().c_str();
    }
    const auto type = value(kOutputType);
    EXPECT_TRUE(!type || (type->bytes.size() == 4 && type->Dword() <= 2));
    if (const auto fonts = value(kFontList)) {
        const auto& bytes = fonts->bytes;
        EXPECT_EQ(0u, bytes.size() % kFontRecord);
        for (size_t at = 0; at + kFontRecord <= bytes.size(); at += kFontRecord)
            EXPECT_TRUE(bytes[at] != 0 && bytes[at + kFontRecord - 1] == 0) << "torn at " << at;
    }
    const UniquePrinter printer = OpenPrinterWithAllAccess(driverhost::kDefaultPrinter);
    float margins[8] = {};
    DWORD needed = 0;
    const DWORD missing = GetPrinterDataW(printer.Get(), SpoolerText(L"KZP Margin"), nullptr,
                                          reinterpret_cast<BYTE*>(margins), sizeof margins, &needed);
    EXPECT_TRUE(missing || (needed == 16 && (margins[0] == 0 || margins[0] == 1.0f || margins[0] == 2.0f)))
        << margins[0];
}

// Two states of everything that a commit writes, in turn.
void Change(const SheetUser& user, bool second) {
    const auto tell = [&](int id) {
        const HWND control = user.Find(id);
        SendMessageW(GetParent(control), WM_COMMAND, MAKEWPARAM(id, BN_CLICKED),
                     reinterpret_cast<LPARAM>(control));
    };
    for (const int box : {IDC_DISPLAY_IN_VIEWER, IDC_PROMPT_FILE_NAME}) {
        SendMessageW(user.Find(box), BM_SETCHECK, second ? BST_CHECKED : BST_UNCHECKED, 0);
        tell(box);
    }
    tell(second ? IDC_OUTPUT_KZP : IDC_OUTPUT_KZPX);
    tell(second ? IDC_FONTS_ALL : IDC_FONTS_NONE);
    SendMessageW(user.Find(IDC_MILLIMETERS), BM_CLICK, 0, 0);
    SetWindowTextW(user.Find(IDC_LEFT), second ? L"2.00" : L"1.00");
}

// What the copy of this program does until it is ended.
void CommitForEver(DWORD owner) {
    const test::ScratchRegistry shared(owner);
    test::HostedSheet host;
    host.run.Add([&](SheetUser& user) {
        const UniqueKernelHandle committed = CommittedEvent(owner);
        for (bool second = false;; second = !second) {
            Change(user, second);
            host.session.TellCallback(CPSUICB_REASON_APPLYNOW,
                                      host.sheet.PageWindow(host.sheet.DriverPageIndex()));
            SetEvent(committed.Get());
        }
    });
    host.run.Show();
}

TEST(Kills, OfACommittingProcessTearNoValue) {
    if (ProgramCopy::IsCopy())
        return CommitForEver(ProgramCopy::Owner());
    const test::ScratchRegistry registry;
    standins::spooler::SetUpPrinter({.name = driverhost::kDefaultPrinter});
    const UniqueKernelHandle committed = CommittedEvent(GetCurrentProcessId());
    for (Campaign run(IsBrief() ? 2 : 60, IsBrief() ? 1 : 3); run.Next();) {
        run.Doing("a process that commits");
        ProgramCopy process;
        ASSERT_EQ(WAIT_OBJECT_0, WaitForSingleObject(committed.Get(), 60'000)) << "no commit came about";
        Sleep(static_cast<DWORD>(run.Random().Below(60)));
        EXPECT_TRUE(process.End()) << "it ended by itself";
        ResetEvent(committed.Get());
        ExpectWholeValues();
        if (run.Iteration() % 5 == 0) {
            test::HostedSheet host;
            PlaySheet(host, [](SheetUser&) {});
        }
    }
}

}  // namespace
}  // namespace kzp::stress
