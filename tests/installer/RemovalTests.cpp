// The actions "Uninstall" and "InstallMonitor".
#include "tests/installer/ActionTest.h"

namespace kzp::test {
namespace {

using namespace standins;
using namespace std::string_literals;

constexpr wchar_t kMonitorsKey[] = L"SYSTEM\\CurrentControlSet\\Control\\Print\\Monitors\\";

const std::wstring kDeleteFailed =
    L"ERROR: Failed to delete new monitor in function DeleteMonitor. The Error code is: ";

struct Uninstall : ActionTest {};

TEST_F(Uninstall, RemovesWhatInstallMadeAndKeepsFormAndSettings) {
    const std::wstring inf = m_folder.File(L"kzp.inf");
    WriteFileText(inf, "[Version]\n");
    m_session.SetActionData(inf);
    ASSERT_EQ(0u, Run("Install"));
    spooler::StartLog();
    EXPECT_EQ(0u, Run("Uninstall"));
    EXPECT_EQ(MachineAfterRemoval(), DescribeMachine());
    EXPECT_EQ(
        (Lines{L"PrintUIEntryW /dl /r \"Brimlake KZP Writer Port\" /n \"Brimlake KZP Writer\" ",
               L"DeletePrinter",
               L"PrintUIEntryW /dd /m \"Brimlake KZP Writer\" /h \"Intel\" /v \"Windows 2000\" ",
               L"DeletePrinterDriverW Brimlake KZP Writer", L"DeletePortW Brimlake KZP Writer Port",
               L"DeletePortW KZP:", L"open manager for everything", L"open Spooler for everything", L"stop",
               L"wait 2000", L"start", L"look", L"log INFO: Printer Spooler service is restarted",
               L"close service", L"close manager", L"DeleteMonitorW Brimlake KZP Writer Port, Windows x64"}),
        spooler::ReadLog());
}

TEST_F(Uninstall, OnlyLogsWhatCannotBeRemoved) {
    EXPECT_EQ(0u, Run("Uninstall"));
    EXPECT_EQ(kDeleteFailed + L"3000\n", m_session.Lines().back());
    for (const wchar_t* const function :
         {L"OpenPrinterW", L"DeletePrinter", L"DeletePrinterDriverW", L"DeletePortW", L"DeleteMonitorW"})
        spooler::FailCall(function, ERROR_CANCELLED);
    EXPECT_EQ(0u, Run("Uninstall"));
    EXPECT_EQ(kDeleteFailed + L"1223\n", m_session.Lines().back());
    EXPECT_EQ(4u, m_session.Lines().size());
    EXPECT_EQ(Lines{}, m_platform.boxes);
}

struct InstallMonitor : ActionTest {
    InstallMonitor() { spooler::StartLog(); }

    // As under a debugger that is told to go on.
    UINT RunOn() const {
        UINT result = 0;
        const Guarded guarded = RunGuarded([&] { result = Run("InstallMonitor"); }, true);
        EXPECT_EQ(1, guarded.breakpoints);
        EXPECT_EQ(0u, guarded.code);
        return result;
    }

    // What was asked of the spooler, for the current environment.
    static Lines Added(const std::wstring& dll) {
        return {L"AddMonitorW Brimlake KZP Writer Port, , " + dll};
    }
};

TEST_F(InstallMonitor, StopsAtItsBreakpointBeforeAnythingElse) {
    m_session.SetActionData(L"KZPPortMonitor.dll");
    const Guarded result = RunGuarded([&] { Run("InstallMonitor"); });
    EXPECT_EQ(static_cast<DWORD>(EXCEPTION_BREAKPOINT), result.code);
    EXPECT_EQ(Lines{}, DescribeMachine());
}

TEST_F(InstallMonitor, AddsTheMonitorWithTheDllThatIsNamed) {
    m_session.SetActionData(L"KZPPortMonitor.dll");
    EXPECT_EQ(0u, RunOn());
    EXPECT_EQ(Lines{L"monitor Brimlake KZP Writer Port, KZPPortMonitor.dll"}, DescribeMachine());
    EXPECT_EQ(static_cast<UINT>(ERROR_INSTALL_FAILURE), RunOn()) << "an existing monitor is a failure";
    EXPECT_EQ(Added(L"KZPPortMonitor.dll"), spooler::ReadLog()) << "and is left alone";
    EXPECT_EQ(Lines{}, m_session.Lines());
    EXPECT_EQ(Lines{}, m_platform.boxes);
}

TEST_F(InstallMonitor, TakesAMonitorOfOtherCaseForAnotherOne) {
    WriteText(HKEY_LOCAL_MACHINE, (kMonitorsKey + L"Brimlake KZP Writer PORT"s).c_str(), L"Driver", L"x.dll");
    WriteText(HKEY_LOCAL_MACHINE, (kMonitorsKey + L"Brimlake KZP Writer Port 2"s).c_str(), L"Driver",
              L"x.dll");
    m_session.SetActionData(L"KZPPortMonitor.dll");
    RunOn();
    EXPECT_EQ(Added(L"KZPPortMonitor.dll"), spooler::ReadLog()) << "the spooler, not the action, refuses it";
}

TEST_F(InstallMonitor, ReadsANameOfAnyLength) {
    for (const size_t length : {259u, 260u, 300u}) {
        const std::wstring name(length, L'm');
        m_session.SetActionData(name);
        EXPECT_EQ(static_cast<UINT>(ERROR_INSTALL_FAILURE), RunOn()) << "there is no such file";
        EXPECT_EQ(Added(name), spooler::ReadLog());
        spooler::StartLog();
    }
}

TEST_F(InstallMonitor, TouchesNothingWithoutANameAndTakesAnUnreadableListForAnEmptyOne) {
    EXPECT_EQ(static_cast<UINT>(ERROR_INSTALL_FAILURE), RunOn());
    m_session.SetActionData(L"");
    EXPECT_EQ(static_cast<UINT>(ERROR_INSTALL_FAILURE), RunOn());
    EXPECT_EQ(Lines{}, spooler::ReadLog());
    EXPECT_EQ(Lines{}, DescribeMachine());
    spooler::FailCall(L"EnumMonitorsW", ERROR_CANCELLED);
    m_session.SetActionData(L"KZPPortMonitor.dll");
    EXPECT_EQ(0u, RunOn());
}

}  // namespace
}  // namespace kzp::test
