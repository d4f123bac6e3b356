// The actions "Install", "Uninstall" and "InstallMonitor", called as the installer calls them.
#include <algorithm>

#include "resources/resource.h"
#include "tests/installer/ActionTest.h"
#include "tests/support/Guarded.h"

namespace kzp::test {
namespace {

using namespace standins;

const std::wstring kRestarted = L"log INFO: Printer Spooler service is restarted";
const std::wstring kMonitorAdded = L"log INFO: Sucessfully created Port Monitor in function AddMonitor.\n";
const std::wstring kMonitorFailed =
    L"log ERROR: Failed to create monitor in function AddMonitor. The Error code is: ";
const std::wstring kOpeningFailed =
    L"log ERROR: Failed to open printer for port reassignment in function OpenPrinter. The Error code is: ";
const std::wstring kDeleteFailed =
    L"log ERROR: Failed to delete new monitor in function DeleteMonitor. The Error code is: ";
const std::wstring kDeleteMonitor = L"DeleteMonitorW Brimlake KZP Writer Port, Windows x64";

Lines And(Lines first, const Lines& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

const Lines kStopping = {Opening(L"manager"), Opening(L"Spooler"), L"stop", L"wait 2000", L"start"};

using Install = ActionTest;

TEST_F(Install, SetsUpEverythingInItsOrder) {
    EXPECT_EQ(0u, Run("Install"));
    EXPECT_EQ(InstalledMachine(), DescribeMachine());
    const std::wstring setUp =
        L"PrintUIEntryW /if /z /r \"Brimlake KZP Writer Port\" /b \"Brimlake KZP Writer\" "
        L"/m \"Brimlake KZP Writer\" /h \"Intel\" /v \"Windows 2000\" /f \"" +
        m_inf + L"\"";
    const Lines printer = {L"AddPortExW Brimlake KZP Writer Port", L"AddPortExW KZP:", setUp,
                           L"AddPrinterDriverW Brimlake KZP Writer", L"AddPrinterW Brimlake KZP Writer"};
    const Lines restart = {
        kStopping[0], kStopping[1], L"stop",          L"wait 2000",     L"store Attributes",     L"start",
        L"look",      kRestarted,   L"close service", L"close manager", L"AddFormW User Defined"};
    const Lines rest = {L"store Publish Directory", L"store Enable ASCII",
                        L"AddMonitorW Brimlake KZP Writer Port, Windows x64, KZPPortMonitor.dll",
                        kMonitorAdded, L"SetPrinterW 2"};
    EXPECT_EQ(And(And(printer, restart), rest), Log());
    EXPECT_EQ(1u, MsiCloseAllHandles()) << "the session's own; the log's records are closed";
}

TEST_F(Install, RepeatedKeepsSettingsAndMarksThePrinterForDirectPrinting) {
    EXPECT_EQ(0u, Run("Install"));
    const std::wstring directory = std::wstring(kPrinterKey) + L"\\DsSpooler";
    WriteText(HKEY_CURRENT_USER, kSettingsKey, L"Publish Directory", L"D:\\Out");
    WriteDword(HKEY_CURRENT_USER, kSettingsKey, L"Enable ASCII", 1);
    WriteText(HKEY_LOCAL_MACHINE, kPrinterKey, L"Port", L"KZP:");
    WriteDword(HKEY_LOCAL_MACHINE, kPrinterKey, L"Attributes", 0x240);
    WriteText(HKEY_LOCAL_MACHINE, directory.c_str(), L"printSpooling", L"PrintAfterSpooled");
    Log();
    EXPECT_EQ(0u, Run("Install"));
    const Lines log = Log(), atRest = {L"wait 2000", L"store Attributes", L"store printSpooling", L"start"};
    EXPECT_NE(log.end(), std::search(log.begin(), log.end(), atRest.begin(), atRest.end()));
    EXPECT_EQ(L"\"PrintDirect\" in 24",
              Shown(ReadValue(HKEY_LOCAL_MACHINE, directory.c_str(), L"printSpooling").value()));
    Machine expected = InstalledMachine();
    expected[L"printer's attributes"] = L" 578";
    expected[L"directory"] = L"\"D:\\Out\" in 14";
    expected[L"ASCII"] = L" 1";
    EXPECT_EQ(expected, DescribeMachine());
}

UINT g_missingText = 0;

// Of the texts that are there, their numbers.
int WINAPI LoadTexts(HINSTANCE module, UINT id, LPWSTR buffer, int capacity) {
    if (id == g_missingText || LoadStringW(module, id, buffer, capacity) == 0)
        return 0;
    return swprintf(buffer, static_cast<size_t>(capacity), L"text %u", id);
}

TEST_F(Install, GoesOnAndTellsWhateverFails) {
    const struct {
        const wchar_t* function;
        DWORD callsThatPass;
        UINT box;
        const wchar_t* builtIn;  // its text where the resource module has none
        std::wstring logged;
    } cases[] = {
        {L"AddMonitorW", 0, IDS_MONITOR_FAILED, L"Failed to create new monitor", kMonitorFailed + L"1223\n"},
        // The first opening is for the form.
        {L"OpenPrinterW", 1, IDS_OPEN_PRINTER_FAILED, L"Failed to open printer", kOpeningFailed + L"1223.\n"},
        {L"GetPrinterW", 0, IDS_GET_PRINTER_FAILED, L"GetPrinter Function Failed.", L""},
        {L"SetPrinterW", 0, IDS_SET_PORT_FAILED, L"Failed to reassign printer port", L""},
    };
    const ImportPatch texts(m_plugIn.Module(), "LoadStringW", AddressOf(LoadTexts));
    for (const auto& [function, callsThatPass, box, builtIn, logged] : cases) {
        // Both texts of a box, or neither.
        for (const UINT missingText : {UINT{0}, box, UINT{IDS_INSTALL_ERROR_CAPTION}}) {
            SCOPED_TRACE(testing::Message() << function << missingText);
            Run("Uninstall");
            Log();
            g_missingText = missingText;
            spooler::FailCall(function, ERROR_CANCELLED, callsThatPass);
            EXPECT_EQ(0u, Run("Install"));
            spooler::ClearFailures();
            Lines told = {kRestarted, box == IDS_MONITOR_FAILED ? L"" : kMonitorAdded,
                          missingText ? L"show Error: " + std::wstring(builtIn)
                                      : L"show text 659: text " + std::to_wstring(box),
                          logged};
            std::erase(told, L"");
            Lines log = Log();
            std::erase_if(log, [](const auto& line) {
                return !line.starts_with(L"log ") && !line.starts_with(L"show ");
            });
            EXPECT_EQ(told, log);
        }
    }
}

// Of what happened, all from where an action turns to the service.
Lines Restart() {
    const Lines log = ActionTest::Log();
    return {std::ranges::find(log, kStopping[0]), log.end()};
}

using Uninstall = ActionTest;

TEST_F(Uninstall, RemovesWhatInstallMadeAndKeepsFormAndSettings) {
    EXPECT_EQ(0u, Run("Install"));
    Log();
    EXPECT_EQ(0u, Run("Uninstall"));
    EXPECT_EQ(MachineAfterRemoval(), DescribeMachine());
    EXPECT_EQ((Lines{L"PrintUIEntryW /dl /r \"Brimlake KZP Writer Port\" /n \"Brimlake KZP Writer\" ",
                     L"DeletePrinter",
                     L"PrintUIEntryW /dd /m \"Brimlake KZP Writer\" /h \"Intel\" /v \"Windows 2000\" ",
                     L"DeletePrinterDriverW Brimlake KZP Writer", L"DeletePortW Brimlake KZP Writer Port",
                     L"DeletePortW KZP:", kStopping[0], kStopping[1], L"stop", L"wait 2000", L"start",
                     L"look", kRestarted, L"close service", L"close manager", kDeleteMonitor}),
              Log());
}

const std::wstring kNotRunning = L"log ERROR: Failed to start Printer Spooer Service!";
const std::wstring kDenied =
    L"log ERROR: Failed to query service status in function QueryServiceStatusEx. The Error Code is:5\n";

TEST_F(Uninstall, LooksUpToFiveTimesAndJudgesByTheLastLookThatSucceeded) {
    const Lines gone = {L"close service", L"close manager", kDeleteMonitor, kDeleteFailed + L"3000\n"};
    const std::wstring look = L"look", wait = L"wait 1000";
    const struct {
        std::vector<int> looks;
        Lines events;
    } cases[] = {
        {{SERVICE_STOPPED}, {look, wait, look, wait, look, wait, look, wait, look, kNotRunning}},
        // It does not wait after a look that fails.
        {{-ERROR_ACCESS_DENIED, SERVICE_START_PENDING, -ERROR_ACCESS_DENIED, SERVICE_RUNNING},
         {look, kDenied, look, wait, look, kDenied, look, kRestarted}},
        {{SERVICE_START_PENDING, -ERROR_ACCESS_DENIED},
         {look, wait, look, kDenied, look, kDenied, look, kDenied, look, kDenied, kNotRunning}},
    };
    for (const auto& [looks, events] : cases) {
        g_service.looks = looks;
        EXPECT_EQ(0u, Run("Uninstall"));
        EXPECT_EQ(And(And(kStopping, events), gone), Restart());
    }
}

TEST_F(Uninstall, EndsInAnAccessViolationWhenNoLookSucceeds) {
    g_service.looks = {-ERROR_ACCESS_DENIED};
    const Guarded result = RunGuarded([&] { Run("Uninstall"); });
    // In a plug-in that is built with traps the trap comes first.
    const bool traps = GetEnvironmentVariableW(L"KZP_CHECKED", nullptr, 0) != 0;
    EXPECT_EQ(static_cast<DWORD>(traps ? EXCEPTION_ILLEGAL_INSTRUCTION : EXCEPTION_ACCESS_VIOLATION),
              result.code);
    EXPECT_EQ(5, std::ranges::count(Log(), kDenied));
}

TEST_F(Uninstall, LeavesAServiceAloneThatCannotBeOpened) {
    g_service.missing = true;
    EXPECT_EQ(0u, Run("Uninstall"));
    EXPECT_EQ(
        (Lines{kStopping[0], kStopping[1], L"close manager", kDeleteMonitor, kDeleteFailed + L"3000\n"}),
        Restart());
}

using InstallMonitor = ActionTest;

TEST_F(InstallMonitor, AddsTheDllThatIsNamedBehindItsBreakpoint) {
    const auto run = [this](const std::wstring& dll) {
        m_session.SetActionData(dll);
        UINT answer = 0;
        // As under a debugger that is told to go on.
        EXPECT_EQ(1, RunGuarded([&] { answer = Run("InstallMonitor"); }, true).breakpoints);
        return answer;
    };
    EXPECT_EQ(static_cast<DWORD>(EXCEPTION_BREAKPOINT), RunGuarded([&] { Run("InstallMonitor"); }).code);
    constexpr UINT kFailure = ERROR_INSTALL_FAILURE;
    EXPECT_EQ(kFailure, run(L""));
    EXPECT_EQ(Lines{}, Log());
    const std::wstring missing(300, L'm'), dll = L"KZPPortMonitor.dll";
    EXPECT_EQ(kFailure, run(missing));
    EXPECT_EQ(0u, run(dll));
    EXPECT_EQ(kFailure, run(dll)) << "it stands already, and is left alone";
    const std::wstring add = L"AddMonitorW Brimlake KZP Writer Port, , ";
    EXPECT_EQ((Lines{add + missing, add + dll}), Log());
    EXPECT_EQ((Machine{{L"monitor", InstalledMachine()[L"monitor"]}}), DescribeMachine());
}

}  // namespace
}  // namespace kzp::test
