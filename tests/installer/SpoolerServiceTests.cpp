// Restarting the spooler, by way of "Uninstall": every turn that the service can take.
#include "tests/installer/ActionTest.h"

namespace kzp::test {
namespace {

struct SpoolerRestart : ActionTest {
    const Lines stopping = {L"open manager for everything", L"open Spooler for everything", L"stop",
                            L"wait 2000", L"start"};
    const Lines closing = {L"close service", L"close manager"};
    const std::wstring running = L"INFO: Printer Spooler service is restarted";
    const std::wstring notRunning = L"ERROR: Failed to start Printer Spooer Service!";
    // There is no monitor to remove.
    const std::wstring end =
        L"ERROR: Failed to delete new monitor in function DeleteMonitor. The Error code is: 3000\n";

    static std::wstring QueryFailed(int code) {
        return L"ERROR: Failed to query service status in function QueryServiceStatusEx. The Error Code is:" +
               std::to_wstring(code) + L"\n";
    }
};

TEST_F(SpoolerRestart, LooksUpToFiveTimesAndJudgesByTheLastLookThatSucceeded) {
    const struct {
        std::vector<int> looks;
        Lines events, logged;
    } cases[] = {
        {{SERVICE_STOPPED, SERVICE_START_PENDING, SERVICE_RUNNING},
         {L"look", L"wait 1000", L"look", L"wait 1000", L"look"},
         {running}},
        {{SERVICE_STOPPED},
         {L"look", L"wait 1000", L"look", L"wait 1000", L"look", L"wait 1000", L"look", L"wait 1000",
          L"look"},
         {notRunning}},
        // It does not wait after a look that fails.
        {{-ERROR_ACCESS_DENIED, SERVICE_START_PENDING, -ERROR_INVALID_HANDLE, SERVICE_RUNNING},
         {L"look", L"look", L"wait 1000", L"look", L"look"},
         {QueryFailed(5), QueryFailed(6), running}},
        {{SERVICE_START_PENDING, -ERROR_ACCESS_DENIED},
         {L"look", L"wait 1000", L"look", L"look", L"look", L"look"},
         {QueryFailed(5), QueryFailed(5), QueryFailed(5), QueryFailed(5), notRunning}},
    };
    Lines log;
    for (const auto& [looks, events, logged] : cases) {
        SCOPED_TRACE(testing::PrintToString(looks));
        m_platform.looks = looks;
        m_platform.events.clear();
        EXPECT_EQ(0u, Run("Uninstall"));
        EXPECT_EQ(And(And(stopping, events), closing), m_platform.events);
        log = And(And(log, logged), {end});
        EXPECT_EQ(log, m_session.Lines());
    }
}

TEST_F(SpoolerRestart, EndsInAnAccessViolationWhenNoLookSucceeds) {
    m_platform.looks = {-ERROR_ACCESS_DENIED};
    const Guarded result = RunGuarded([&] { Run("Uninstall"); });
    // In a plug-in that is built with traps the trap comes first.
    const bool traps = GetEnvironmentVariableW(L"KZP_CHECKED", nullptr, 0) != 0;
    EXPECT_EQ(static_cast<DWORD>(traps ? EXCEPTION_ILLEGAL_INSTRUCTION : EXCEPTION_ACCESS_VIOLATION),
              result.code);
    EXPECT_EQ(Lines(5, QueryFailed(5)), m_session.Lines()) << "and nothing behind them";
    Lines events = stopping;
    events.insert(events.end(), 5, L"look");
    EXPECT_EQ(events, m_platform.events) << "no waits";
}

TEST_F(SpoolerRestart, IsLeftOutWhenTheServiceCannotBeOpened) {
    m_platform.serviceMissing = true;
    EXPECT_EQ(0u, Run("Uninstall"));
    EXPECT_EQ((Lines{L"open manager for everything", L"open Spooler for everything", L"close manager"}),
              m_platform.events);
    EXPECT_EQ(Lines{end}, m_session.Lines());

    m_platform.managerMissing = true;
    m_platform.events.clear();
    EXPECT_EQ(0u, Run("Uninstall"));
    EXPECT_EQ(Lines{L"open manager for everything"}, m_platform.events);
}

}  // namespace
}  // namespace kzp::test
