// The actions "Uninstall", with every turn that the restart of the spooler can take, and "InstallMonitor".
#include <algorithm>

#include "tests/installer/ActionTest.h"

namespace kzp::test {
namespace {

using namespace standins;

const std::wstring kDeleteFailed =
    L"log ERROR: Failed to delete new monitor in function DeleteMonitor. The Error code is: ";
const std::wstring kDeleteMonitor = L"DeleteMonitorW Brimlake KZP Writer Port, Windows x64";

struct Uninstall : ActionTest {
    // The log of an action from where it turns to the service to where it turns to the monitor.
    Lines Restart() const {
        EXPECT_EQ(0u, Run("Uninstall"));
        const Lines log = Log();
        const auto end = std::ranges::find(log, kDeleteMonitor);
        EXPECT_NE(log.end(), end);
        return {std::ranges::find(log, L"open manager for everything"), end};
    }
};

TEST_F(Uninstall, RemovesWhatInstallMadeAndKeepsFormAndSettings) {
    const std::wstring inf = m_folder.File(L"kzp.inf");
    WriteFileText(inf, "[Version]\n");
    m_session.SetActionData(inf);
    ASSERT_EQ(0u, Run("Install"));
    Log();
    EXPECT_EQ(0u, Run("Uninstall"));
    EXPECT_EQ(MachineAfterRemoval(), DescribeMachine());
    EXPECT_EQ((Lines{L"PrintUIEntryW /dl /r \"Brimlake KZP Writer Port\" /n \"Brimlake KZP Writer\" ",
                     L"DeletePrinter",
                     L"PrintUIEntryW /dd /m \"Brimlake KZP Writer\" /h \"Intel\" /v \"Windows 2000\" ",
                     L"DeletePrinterDriverW Brimlake KZP Writer", L"DeletePortW Brimlake KZP Writer Port",
                     L"DeletePortW KZP:", L"open manager for everything", L"open Spooler for everything",
                     L"stop", L"wait 2000", L"start", L"look", kRestarted, L"close service", L"close manager",
                     kDeleteMonitor}),
              Log());
}

TEST_F(Uninstall, OnlyLogsWhatCannotBeRemoved) {
    EXPECT_EQ(0u, Run("Uninstall"));
    EXPECT_EQ((Lines{kRestarted, kDeleteFailed + L"3000\n"}), Told());
    for (const wchar_t* const function :
         {L"OpenPrinterW", L"DeletePrinter", L"DeletePrinterDriverW", L"DeletePortW", L"DeleteMonitorW"})
        spooler::FailCall(function, ERROR_CANCELLED);
    EXPECT_EQ(0u, Run("Uninstall"));
    EXPECT_EQ((Lines{kRestarted, kDeleteFailed + L"1223\n"}), Told());
}

const Lines kStopping = {L"open manager for everything", L"open Spooler for everything", L"stop",
                         L"wait 2000", L"start"};
const std::wstring kNotRunning = L"log ERROR: Failed to start Printer Spooer Service!";
const std::wstring kDenied =
    L"log ERROR: Failed to query service status in function QueryServiceStatusEx. The Error Code is:5\n";

Lines And(Lines first, const Lines& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

TEST_F(Uninstall, LooksUpToFiveTimesAndJudgesByTheLastLookThatSucceeded) {
    const std::wstring look = L"look", wait = L"wait 1000";
    const struct {
        std::vector<int> looks;
        Lines events;
    } cases[] = {
        {{SERVICE_STOPPED, SERVICE_START_PENDING, SERVICE_RUNNING},
         {look, wait, look, wait, look, kRestarted}},
        {{SERVICE_STOPPED}, {look, wait, look, wait, look, wait, look, wait, look, kNotRunning}},
        // It does not wait after a look that fails.
        {{-ERROR_ACCESS_DENIED, SERVICE_START_PENDING, -ERROR_ACCESS_DENIED, SERVICE_RUNNING},
         {look, kDenied, look, wait, look, kDenied, look, kRestarted}},
        {{SERVICE_START_PENDING, -ERROR_ACCESS_DENIED},
         {look, wait, look, kDenied, look, kDenied, look, kDenied, look, kDenied, kNotRunning}},
    };
    for (const auto& [looks, events] : cases) {
        SCOPED_TRACE(testing::PrintToString(looks));
        g_service.looks = looks;
        EXPECT_EQ(And(And(kStopping, events), {L"close service", L"close manager"}), Restart());
    }
}

TEST_F(Uninstall, EndsInAnAccessViolationWhenNoLookSucceeds) {
    g_service.looks = {-ERROR_ACCESS_DENIED};
    const Guarded result = RunGuarded([&] { Run("Uninstall"); });
    // In a plug-in that is built with traps the trap comes first.
    const bool traps = GetEnvironmentVariableW(L"KZP_CHECKED", nullptr, 0) != 0;
    EXPECT_EQ(static_cast<DWORD>(traps ? EXCEPTION_ILLEGAL_INSTRUCTION : EXCEPTION_ACCESS_VIOLATION),
              result.code);
    const Lines log = Log();
    Lines denied;
    for (int look = 0; look < 5; ++look)
        denied = And(denied, {L"look", kDenied});
    EXPECT_EQ(And(kStopping, denied), Lines(std::ranges::find(log, kStopping[0]), log.end())) << "no waits";
}

TEST_F(Uninstall, LeavesAServiceAloneThatCannotBeOpened) {
    g_service.serviceMissing = true;
    EXPECT_EQ((Lines{kStopping[0], kStopping[1], L"close manager"}), Restart());
    g_service.managerMissing = true;
    EXPECT_EQ(Lines{kStopping[0]}, Restart());
}

struct InstallMonitor : ActionTest {};

TEST_F(InstallMonitor, StopsAtItsBreakpointBeforeAnythingElse) {
    m_session.SetActionData(L"KZPPortMonitor.dll");
    const Guarded result = RunGuarded([&] { Run("InstallMonitor"); });
    EXPECT_EQ(static_cast<DWORD>(EXCEPTION_BREAKPOINT), result.code);
    EXPECT_EQ(Lines{}, Log());
}

TEST_F(InstallMonitor, AddsTheMonitorWithTheDllThatIsNamed) {
    const std::wstring dll = L"KZPPortMonitor.dll";
    const auto expect = [this](bool asked, UINT answer, const std::wstring& data) {
        m_session.SetActionData(data);
        UINT result = 0;
        // As under a debugger that is told to go on.
        const Guarded guarded = RunGuarded([&] { result = Run("InstallMonitor"); }, true);
        EXPECT_EQ(1, guarded.breakpoints);
        EXPECT_EQ(0u, guarded.code);
        EXPECT_EQ(answer, result);
        EXPECT_EQ(asked ? Lines{L"AddMonitorW Brimlake KZP Writer Port, , " + data} : Lines{}, Log());
    };
    constexpr UINT kFailure = ERROR_INSTALL_FAILURE;
    expect(false, kFailure, L"");
    for (const size_t length : {259u, 260u, 300u})
        expect(true, kFailure, std::wstring(length, L'm'));  // there is no such file
    expect(true, 0, dll);
    EXPECT_EQ((Machine{{L"monitor", InstalledMachine()[L"monitor"]}}), DescribeMachine());
    expect(false, kFailure, dll);  // an existing monitor is a failure, and is left alone
    spooler::FailCall(L"EnumMonitorsW", ERROR_CANCELLED);
    expect(true, kFailure, dll);  // an unreadable list counts as an empty one; the spooler refuses
    spooler::ClearFailures();
    // So does one of other case, or of a longer name.
    RegDeleteKeyW(HKEY_LOCAL_MACHINE, kMonitorKey);
    const std::wstring other = std::wstring(kMonitorKey).substr(0, std::size(kMonitorKey) - 5);
    WriteText(HKEY_LOCAL_MACHINE, (other + L"Port 2").c_str(), L"Driver", L"x.dll");
    WriteText(HKEY_LOCAL_MACHINE, (other + L"PORT").c_str(), L"Driver", L"x.dll");
    expect(true, kFailure, dll);
}

}  // namespace
}  // namespace kzp::test
