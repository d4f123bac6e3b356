// What several processes do to one another's settings: one ended in the middle of a commit, eight at once.
#include <algorithm>
#include <cstring>
#include <functional>
#include <vector>

#include "resources/resource.h"
#include "settings/SettingsStore.h"
#include "support/UniqueHandle.h"
#include "tools/driverhost/PrintCommand.h"
#include "tools/driverhost/Text.h"
#include "tools/stress/Campaigns.h"
#include "tools/stress/Watch.h"
#include "tools/stress/World.h"

namespace stress {

namespace {

using namespace kzp::test;
using driverhost::Format;

constexpr DWORD kPatienceMilliseconds = 60'000;
constexpr int kAtOnce = 8;
constexpr size_t kFontRecord = 64;

std::wstring ReadyName(DWORD owner) {
    return Format(L"KZP stress commits %lu", owner);
}

// Every value that a commit writes is as one commit wrote it: never a piece, never a mixture within itself.
void ExpectWholeValues(Run& run) {
    const auto text = [&](const wchar_t* name, std::initializer_list<const wchar_t*> whole) {
        const auto value = ReadValue(HKEY_CURRENT_USER, kSettingsKey, name);
        if (!value)
            return;
        const std::wstring stored = value->Text();
        run.Expect(value->type == REG_SZ &&
                       std::any_of(whole.begin(), whole.end(), [&](auto* one) { return stored == one; }),
                   L"%ls holds \"%ls\", type %lu", name, stored.c_str(), value->type);
    };
    text(kzp::kLaunchView, {L"", L"YES", L"NO"});
    text(kzp::kPromptFileName, {L"", L"YES", L"NO", L"No"});
    if (const auto value = ReadValue(HKEY_CURRENT_USER, kSettingsKey, kzp::kOutputType))
        run.Expect(value->type == REG_DWORD && value->bytes.size() == 4 && value->Dword() <= 2,
                   L"OutputType holds %lu, %zu bytes", value->Dword(), value->bytes.size());
    if (const auto value = ReadValue(HKEY_CURRENT_USER, kSettingsKey, kzp::kFontList)) {
        bool whole = value->type == REG_BINARY && value->bytes.size() % kFontRecord == 0;
        for (size_t at = 0; whole && at < value->bytes.size(); at += kFontRecord)
            whole = value->bytes[at] != 0 && value->bytes[at + kFontRecord - 1] == 0;
        run.Expect(whole, L"FONTLIST of %zu bytes is torn", value->bytes.size());
    }
    HANDLE printer = nullptr;
    std::wstring name = driverhost::kDefaultPrinter;
    OpenPrinterW(name.data(), &printer, nullptr);
    const kzp::UniquePrinter owner(printer);
    wchar_t margin[] = L"KZP Margin";
    float margins[8] = {};
    DWORD needed = 0;
    if (GetPrinterDataW(printer, margin, nullptr, reinterpret_cast<BYTE*>(margins), sizeof margins,
                        &needed) == 0)
        run.Expect(needed == 16 && (margins[0] == 0 || margins[0] == 1.0f || margins[0] == 2.0f),
                   L"KZP Margin: %lu bytes, left %.3f", needed, static_cast<double>(margins[0]));
}

void ExpectSheetOpens(Run& run) {
    HostedSheet host;
    const auto closed = PlaySheet(host, [](driverhost::SheetUser&) {}, Ending::kCancel);
    run.Expect(closed == CPSUI_CANCEL, L"a fresh sheet does not open");
}

// Two states of everything that a commit writes, in turn.
void Change(driverhost::SheetUser& user, bool second) {
    const auto tell = [&](int id, WORD code) {
        const HWND control = user.Find(id);
        SendMessageW(GetParent(control), WM_COMMAND, MAKEWPARAM(id, code), reinterpret_cast<LPARAM>(control));
    };
    const auto check = [&](int id, bool on) {
        SendMessageW(user.Find(id), BM_SETCHECK, on ? BST_CHECKED : BST_UNCHECKED, 0);
        tell(id, BN_CLICKED);
    };
    check(IDC_DISPLAY_IN_VIEWER, second);
    check(IDC_PROMPT_FILE_NAME, second);
    tell(second ? IDC_OUTPUT_KZP : IDC_OUTPUT_KZPX, BN_CLICKED);
    tell(second ? IDC_FONTS_ALL : IDC_FONTS_NONE, BN_CLICKED);
    SendMessageW(user.Find(IDC_MILLIMETERS), BM_CLICK, 0, 0);
    SetWindowTextW(user.Find(IDC_LEFT), second ? L"2.00" : L"1.00");
}

}  // namespace

int CommitForEver(DWORD owner) {
    const ScratchRegistry registry(owner);
    HostedSheet host;
    host.run.limitMilliseconds = kPatienceMilliseconds;
    host.run.Add([&](driverhost::SheetUser& user) {
        const kzp::UniqueKernelHandle ready(OpenEventW(EVENT_MODIFY_STATE, FALSE, ReadyName(owner).c_str()));
        const HWND page = host.sheet.PageWindow(host.sheet.DriverPageIndex());
        for (bool second = false;; second = !second) {
            Change(user, second);
            host.session.TellCallback(CPSUICB_REASON_APPLYNOW, page);
            SetEvent(ready.Get());
        }
    });
    host.run.Show();
    return 0;
}

void Kills(Run& run) {
    const ScratchRegistry registry;
    SetUpPrinter();
    const kzp::UniqueKernelHandle ready(
        CreateEventW(nullptr, FALSE, FALSE, ReadyName(GetCurrentProcessId()).c_str()));
    for (run.Begin(run.Either(60, 2), run.Either(3, 1)); run.Next();) {
        run.Doing(L"starting a process that commits");
        const kzp::UniqueKernelHandle process(
            StartSelf(Format(L"--role commit --owner %lu", GetCurrentProcessId())));
        const HANDLE either[] = {ready.Get(), process.Get()};
        if (!run.Expect(WaitForMultipleObjects(2, either, FALSE, kPatienceMilliseconds) == WAIT_OBJECT_0,
                        L"no commit came about"))
            continue;
        Sleep(static_cast<DWORD>(run.Random().Below(60)));
        run.Expect(TerminateProcess(process.Get(), 0) != FALSE, L"it ended by itself");
        WaitForSingleObject(process.Get(), INFINITE);
        ResetEvent(ready.Get());
        run.Doing(L"looking at what was stored");
        ExpectWholeValues(run);
        if (run.Iteration() % run.Either(5, 2) == 0)
            ExpectSheetOpens(run);
        run.Tried();
    }
}

int WorkAlongside(DWORD owner, std::uint64_t seed) {
    const ScratchRegistry registry(owner);
    Dice dice(seed);
    HostedSheet host;
    const QuietShell shell(host.plugIn.Module());
    const auto closed = PlaySheet(
        host,
        [&](driverhost::SheetUser& user) {
            static constexpr int kClicks[] = {IDC_DISPLAY_IN_VIEWER, IDC_PROMPT_FILE_NAME, IDC_OUTPUT_KZP,
                                              IDC_OUTPUT_KZPX,       IDC_FONTS_ALL,        IDC_FONTS_NONE};
            for (int click = 0; click < 5; ++click)
                SendMessageW(user.Find(dice.OneOf(kClicks)), BM_CLICK, 0, 0);
        },
        Ending::kOk);
    if (!closed)
        return 1;
    for (const auto& call :
         driverhost::PrintDocument(host.session.Object(), host.session.Printer(), L"A document").calls) {
        if (call.result != S_OK)
            return 2;
    }
    return 0;
}

void Together(Run& run) {
    const ScratchRegistry registry;
    SetUpPrinter();
    WriteText(HKEY_LOCAL_MACHINE, kProductKey, L"HelpFilePath", L"C:\\KZP\\writer.chm");
    WriteDword(HKEY_LOCAL_MACHINE, kQueueKey, L"Attributes", 0x40);
    for (run.Begin(run.Either(12, 1), 1); run.Next();) {
        run.Doing(L"eight processes at once");
        std::vector<kzp::UniqueKernelHandle> processes;
        for (int process = 0; process < kAtOnce; ++process)
            processes.emplace_back(StartSelf(Format(L"--role work --owner %lu --seed %llu",
                                                    GetCurrentProcessId(), run.Random().Roll() % 100000)));
        for (const auto& process : processes) {
            const bool ended = WaitForSingleObject(process.Get(), 2 * kPatienceMilliseconds) == WAIT_OBJECT_0;
            DWORD status = 0;
            GetExitCodeProcess(process.Get(), &status);
            run.Expect(ended && status == 0, L"a process ends with 0x%08lX", status);
            if (!ended)
                TerminateProcess(process.Get(), 1);
            run.Tried();
        }
        ExpectWholeValues(run);
    }
}

}  // namespace stress
