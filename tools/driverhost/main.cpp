// The program around the driver host: one command, its report, its exit status.
#include <cstdio>

#include "tools/driverhost/Options.h"
#include "tools/driverhost/PrintCommand.h"
#include "tools/driverhost/PrinterSetup.h"
#include "tools/driverhost/Script.h"
#include "tools/driverhost/State.h"
#include "tools/driverhost/Text.h"

namespace {

using namespace driverhost;

enum ExitStatus { kDone = 0, kFailed = 1, kUsage = 2, kHung = 3 };

DWORD WINAPI Watchdog(void* seconds) {
    Sleep(static_cast<DWORD>(reinterpret_cast<ULONG_PTR>(seconds)) * 1000);
    std::fputs("driverhost: the script hangs; ended\n", stderr);
    std::fflush(stderr);
    TerminateProcess(GetCurrentProcess(), kHung);
    return 0;
}

void StartWatchdog(DWORD seconds) {
    CloseHandle(CreateThread(nullptr, 0, Watchdog, reinterpret_cast<void*>(ULONG_PTR{seconds}), 0, nullptr));
}

void SayWho(const PlugIn& plugIn, const DocumentSession& session) {
    const DWORD version = session.Version();
    Say(Format(L"plug-in %ls", plugIn.Path().c_str()));
    Say(Format(L"signature 0x%08lX, version %lu.%lu.%lu.%lu, helper published: 0x%08lX", session.Signature(),
               version >> 24, version >> 16 & 0xFF, version >> 8 & 0xFF, version & 0xFF,
               session.Published()));
}

void RunSheet(const PlugIn& plugIn, Options& options) {
    DocumentSession session(plugIn, std::move(options.session));
    SayWho(plugIn, session);
    HostSheet sheet(session, options.sheet);
    if (!options.quiet)
        sheet.onEvent = [](const std::wstring& event) { Say(L"  " + event); };
    SheetRun run(sheet);
    run.limitMilliseconds = options.timeoutSeconds * 1000;
    Script script(run, options.outFolder);
    for (const std::wstring& line : options.script)
        script.Add(line);
    if (!options.script.empty())
        StartWatchdog(options.timeoutSeconds + 5);
    const State before = CaptureState(session);
    const LONG result = run.Show();
    if (options.diff)
        PrintChanges(before, CaptureState(session));
    Say(Format(L"%d announcements, %d applied, %d refused, %ls",
               static_cast<int>(session.Helper().Announcements().size()), sheet.Applied(), sheet.Refused(),
               result == CPSUI_OK ? L"closed with OK" : L"closed with Cancel"));
}

void RunDevMode(const PlugIn& plugIn, Options& options) {
    DocumentSession session(plugIn, std::move(options.session));
    SayWho(plugIn, session);
    constexpr const wchar_t* names[] = {L"", L"SIZE", L"DEFAULT", L"CONVERT", L"MERGE"};
    for (const DevModeCall& call : session.DevMode().Calls())
        Say(Format(L"  OEMDM_%-8ls answers 0x%08lX", names[call.mode], call.result));
    PrintState(DeviceModeState(session.DevMode()));
}

void RunState(const PlugIn& plugIn, Options& options) {
    DocumentSession session(plugIn, std::move(options.session));
    PrintState(CaptureState(session));
}

void Run(Options& options) {
    if (options.createPrinter)
        CreatePrinter(options.session.printer);
    const PlugIn plugIn(options.dll);
    if (options.command == L"sheet")
        RunSheet(plugIn, options);
    else if (options.command == L"devmode")
        RunDevMode(plugIn, options);
    else if (options.command == L"state")
        RunState(plugIn, options);
    else
        RunPrintCommand(plugIn, options.session.printer, options.waitMilliseconds);
}

bool IsCommand(const std::wstring& name) {
    return name == L"sheet" || name == L"devmode" || name == L"state" || name == L"print";
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
    SetConsoleOutputCP(CP_UTF8);
    SetProcessDPIAware();  // as the programs that print
    Options options;
    try {
        options = ParseOptions(std::vector<std::wstring>(arguments + 1, arguments + count));
        if (options.command != L"help" && !IsCommand(options.command))
            throw HostError{L"unknown command " + options.command};
    } catch (const HostError& error) {
        std::fprintf(stderr, "driverhost: %s\ndriverhost --help explains the command line.\n", error.what());
        return kUsage;
    }
    if (options.command == L"help") {
        Say(HelpText());
        return kDone;
    }
    try {
        Run(options);
        return kDone;
    } catch (const std::exception& error) {
        std::fflush(stdout);
        std::fprintf(stderr, "driverhost: %s\n", error.what());
        return kFailed;
    }
}
