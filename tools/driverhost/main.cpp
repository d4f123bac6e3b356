// The program around the driver host: one command, its report, its exit status.
#include <cstdio>

#include "tools/driverhost/Options.h"
#include "tools/driverhost/PrintCommand.h"
#include "tools/driverhost/Script.h"
#include "tools/driverhost/State.h"
#include "tools/driverhost/Text.h"

namespace {

using namespace driverhost;

enum ExitStatus { kDone = 0, kFailed = 1, kUsage = 2 };

void RunSheet(const PlugIn& plugIn, Options& options) {
    DocumentSession session(plugIn, std::move(options.session));
    const DWORD version = PlugInInfo(session.Object(), OEMGI_GETVERSION);
    Say(Format(L"plug-in %ls, signature 0x%08lX, version %lu.%lu.%lu.%lu", plugIn.Path().c_str(),
               PlugInInfo(session.Object(), OEMGI_GETSIGNATURE), version >> 24, version >> 16 & 0xFF,
               version >> 8 & 0xFF, version & 0xFF));
    HostSheet sheet(session, options.sheet);
    if (!options.quiet)
        sheet.onEvent = [](const std::wstring& event) { Say(L"  " + event); };
    SheetRun run(sheet);
    Script script(run, options.outFolder);
    for (const std::wstring& line : options.script)
        script.Add(line);
    const State before = CaptureState(session);
    const LONG result = run.Show();
    if (options.diff)
        PrintChanges(before, CaptureState(session));
    Say(Format(L"%zu announcements, %d applied, %d refused, closed with %ls",
               session.Helper().Announcements().size(), sheet.Applied(), sheet.Refused(),
               result == CPSUI_OK ? L"OK" : L"Cancel"));
}

void Run(Options& options) {
    if (options.createPrinter)
        CreatePrinter(options.session.printer);
    const PlugIn plugIn(options.dll);
    if (options.command == L"sheet") {
        RunSheet(plugIn, options);
    } else if (options.command == L"state") {
        DocumentSession session(plugIn, std::move(options.session));
        PrintState(CaptureState(session));
    } else if (options.command == L"print") {
        RunPrintCommand(plugIn, options.session.printer);
    } else {
        Say(HelpText());
    }
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
    SetConsoleOutputCP(CP_UTF8);
    SetProcessDPIAware();  // as the programs that print
    ExitStatus whenWrong = kUsage;
    try {
        Options options = ParseOptions(std::vector<std::wstring>(arguments + 1, arguments + count));
        whenWrong = kFailed;
        Run(options);
        return kDone;
    } catch (const std::exception& error) {
        std::fflush(stdout);
        std::fprintf(stderr, "driverhost: %s\n%s", error.what(),
                     whenWrong == kUsage ? "driverhost --help explains the command line.\n" : "");
        return whenWrong;
    }
}
