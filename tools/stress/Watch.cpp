#include "tools/stress/Watch.h"

#include <algorithm>
#include <vector>

#include "support/UniqueHandle.h"
#include "tests/support/ScratchRegistry.h"
#include "tools/driverhost/Text.h"

namespace stress {

namespace {

using driverhost::Format;
using driverhost::Say;

constexpr DWORD kLookMilliseconds = 250;
constexpr ULONGLONG kProgressMilliseconds = 15'000;
constexpr int kMostRestarts = 40;
constexpr DWORD kHung = 0xFFFF'0001;

// Waits for the process; ends it when no iteration begins for too long. Answers its exit status.
DWORD WaitFor(HANDLE process, const Campaign& campaign, const Ledger& ledger) {
    LONG64 iteration = -1;
    ULONGLONG since = GetTickCount64();
    ULONGLONG told = since;
    while (WaitForSingleObject(process, kLookMilliseconds) == WAIT_TIMEOUT) {
        const ULONGLONG now = GetTickCount64();
        if (ledger.iteration != iteration) {
            iteration = ledger.iteration;
            since = now;
        }
        if (now - told > kProgressMilliseconds) {
            told = now;
            Say(Format(L"  %ls: iteration %lld of %lld, %lld %ls", campaign.name, ledger.iteration,
                       ledger.total, ledger.inputs, campaign.measure));
        }
        if (now - since > campaign.patience * 1000ull) {
            TerminateProcess(process, kHung);
            WaitForSingleObject(process, INFINITE);
        }
    }
    DWORD status = 0;
    GetExitCodeProcess(process, &status);
    return status;
}

void TellEnd(const Campaign& campaign, const Plan& plan, const Ledger& ledger, DWORD status) {
    const std::wstring how = status == kHung ? L"HANG" : Format(L"CRASH 0x%08lX", status);
    Say(Format(L"  %ls in %ls, iteration %lld: %ls", how.c_str(), campaign.name, ledger.iteration,
               ledger.doing));
    Say(Format(L"    again: stress.exe --only %ls --seed %llu --from %lld --count 1%ls", campaign.name,
               plan.seed, ledger.iteration, plan.brief ? L" --short" : L""));
}

void AddUp(Outcome& outcome, const Ledger& ledger) {
    outcome.inputs += ledger.inputs;
    outcome.failures += ledger.failures;
    outcome.handles = std::max(outcome.handles, ledger.handles);
    outcome.windows = std::max(outcome.windows, ledger.windows);
    outcome.blocks = std::max(outcome.blocks, ledger.blocks);
    outcome.figures = ledger.figures;
    for (LONG text = 0; text < std::min<LONG>(ledger.failures, kKeptFailures); ++text)
        Say(Format(L"  FAILED: %ls", ledger.texts[text]));
}

}  // namespace

HANDLE StartSelf(const std::wstring& arguments, DWORD* processId) {
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    std::wstring line = Format(L"\"%ls\" %ls", path, arguments.c_str());
    STARTUPINFOW start = {};
    start.cb = sizeof start;
    PROCESS_INFORMATION started = {};
    if (!CreateProcessW(path, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start, &started))
        return nullptr;
    CloseHandle(started.hThread);
    if (processId)
        *processId = started.dwProcessId;
    return started.hProcess;
}

Outcome Watch(const Campaign& campaign, const Plan& plan) {
    Outcome outcome;
    const ULONGLONG begun = GetTickCount64();
    Plan rest = plan;
    for (int part = 0; part < kMostRestarts; ++part) {
        const std::wstring name =
            Format(L"KZP stress %lu %ls %d", GetCurrentProcessId(), campaign.name, part);
        const Ledger* const ledger = OpenLedger(name.c_str());
        DWORD processId = 0;
        const kzp::UniqueKernelHandle process(StartSelf(
            Format(L"--play %ls --ledger \"%ls\" --seed %llu --from %lld --count %lld%ls", campaign.name,
                   name.c_str(), rest.seed, rest.from, rest.count, rest.brief ? L" --short" : L""),
            &processId));
        if (!ledger || !process) {
            ++outcome.failures;
            Say(Format(L"  %ls cannot be started", campaign.name));
            break;
        }
        const DWORD status = WaitFor(process.Get(), campaign, *ledger);
        AddUp(outcome, *ledger);
        if (ledger->finished)
            break;
        kzp::test::DeleteScratchRegistry(processId);
        ++(status == kHung ? outcome.hangs : outcome.crashes);
        TellEnd(campaign, rest, *ledger, status);
        const LONG64 next = ledger->iteration + 1;
        rest.count -= rest.count == MAXLONG64 ? 0 : next - rest.from;
        rest.from = next;
        if (rest.from >= ledger->total || rest.count <= 0)
            break;
    }
    outcome.seconds = static_cast<double>(GetTickCount64() - begun) / 1000;
    return outcome;
}

}  // namespace stress
