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

    void Expect(const Lines& looking, const Lines& logged) const {
        Lines events = stopping;
        events.insert(events.end(), looking.begin(), looking.end());
        events.insert(events.end(), closing.begin(), closing.end());
        EXPECT_EQ(events, m_services.events);
        Lines lines = logged;
        lines.push_back(end);
        EXPECT_EQ(lines, m_session.Lines());
    }
};

TEST_F(SpoolerRestart, WaitsUntilTheSpoolerRuns) {
    m_services.looks = {SERVICE_STOPPED, SERVICE_START_PENDING, SERVICE_RUNNING};
    EXPECT_EQ(0u, Run("Uninstall"));
    Expect({L"look", L"wait 1000", L"look", L"wait 1000", L"look"}, {running});
}

TEST_F(SpoolerRestart, GivesUpAfterFiveLooks) {
    m_services.looks = {SERVICE_STOPPED};
    EXPECT_EQ(0u, Run("Uninstall"));
    Expect(
        {L"look", L"wait 1000", L"look", L"wait 1000", L"look", L"wait 1000", L"look", L"wait 1000", L"look"},
        {notRunning});
}

TEST_F(SpoolerRestart, DoesNotWaitAfterALookThatFails) {
    m_services.looks = {-ERROR_ACCESS_DENIED, SERVICE_START_PENDING, -ERROR_INVALID_HANDLE, SERVICE_RUNNING};
    EXPECT_EQ(0u, Run("Uninstall"));
    Expect({L"look", L"look", L"wait 1000", L"look", L"look"}, {QueryFailed(5), QueryFailed(6), running});
}

TEST_F(SpoolerRestart, JudgesByTheLastLookThatSucceeded) {
    m_services.looks = {SERVICE_START_PENDING, -ERROR_ACCESS_DENIED};
    EXPECT_EQ(0u, Run("Uninstall"));
    Expect({L"look", L"wait 1000", L"look", L"look", L"look", L"look"},
           {QueryFailed(5), QueryFailed(5), QueryFailed(5), QueryFailed(5), notRunning});
}

TEST_F(SpoolerRestart, EndsInAnAccessViolationWhenNoLookSucceeds) {
    m_services.looks = {-ERROR_ACCESS_DENIED};
    const Guarded result = RunGuarded([&] { Run("Uninstall"); });
    EXPECT_EQ(static_cast<DWORD>(EXCEPTION_ACCESS_VIOLATION), result.code);
    EXPECT_EQ(Lines(5, QueryFailed(5)), m_session.Lines()) << "and nothing behind them";
    Lines events = stopping;
    events.insert(events.end(), 5, L"look");
    EXPECT_EQ(events, m_services.events) << "no waits";
}

TEST_F(SpoolerRestart, IsLeftOutWhenTheServiceCannotBeOpened) {
    m_services.serviceMissing = true;
    EXPECT_EQ(0u, Run("Uninstall"));
    EXPECT_EQ((Lines{L"open manager for everything", L"open Spooler for everything", L"close manager"}),
              m_services.events);
    EXPECT_EQ(Lines{end}, m_session.Lines());

    m_services.managerMissing = true;
    m_services.events.clear();
    EXPECT_EQ(0u, Run("Uninstall"));
    EXPECT_EQ(Lines{L"open manager for everything"}, m_services.events);
}

}  // namespace
}  // namespace kzp::test
