// The actions "Uninstall" and "InstallMonitor".
#include <optional>

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
    printui::ForgetCommands();
    spooler::StartLog();
    EXPECT_EQ(0u, Run("Uninstall"));
    EXPECT_EQ(MachineAfterRemoval(), DescribeMachine());
    EXPECT_EQ((Lines{L"/dl /r \"Brimlake KZP Writer Port\" /n \"Brimlake KZP Writer\" ",
                     L"/dd /m \"Brimlake KZP Writer\" /h \"Intel\" /v \"Windows 2000\" "}),
              printui::Commands());
    const Lines log = spooler::ReadLog();
    ASSERT_LE(3u, log.size());
    EXPECT_EQ((Lines{L"DeletePortW Brimlake KZP Writer Port", L"DeletePortW KZP:",
                     L"DeleteMonitorW Brimlake KZP Writer Port"}),
              Lines(log.end() - 3, log.end()));
    EXPECT_EQ(L"INFO: Printer Spooler service is restarted", m_session.Lines().back());
    EXPECT_TRUE(m_boxes.Caught().empty());
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
    EXPECT_TRUE(m_boxes.Caught().empty());
}

struct AddedMonitor {
    DWORD level;
    std::wstring name, environment, dll;
};
std::optional<AddedMonitor> g_added;

BOOL WINAPI RecordingAddMonitor(LPWSTR server, DWORD level, LPBYTE record) {
    EXPECT_EQ(nullptr, server);
    const auto& monitor = *reinterpret_cast<const MONITOR_INFO_2W*>(record);
    g_added = {level, monitor.pName, monitor.pEnvironment, monitor.pDLLName};
    return AddMonitorW(server, level, record);
}

struct InstallMonitor : ActionTest {
    InstallMonitor() { g_added.reset(); }

    // As under a debugger that is told to go on.
    UINT RunOn() const {
        UINT result = 0;
        const Guarded guarded = RunGuarded([&] { result = Run("InstallMonitor"); }, true);
        EXPECT_EQ(1, guarded.breakpoints);
        EXPECT_EQ(0u, guarded.code);
        return result;
    }

    ImportPatch m_recording{m_plugIn.Module(), "AddMonitorW", AddressOf(RecordingAddMonitor)};
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
    ASSERT_TRUE(g_added);
    EXPECT_EQ(2u, g_added->level);
    EXPECT_EQ(L"", g_added->environment) << "the current one";

    g_added.reset();
    EXPECT_EQ(static_cast<UINT>(ERROR_INSTALL_FAILURE), RunOn()) << "an existing monitor is a failure";
    EXPECT_FALSE(g_added) << "and is left alone";
    EXPECT_EQ(Lines{}, m_session.Lines());
    EXPECT_TRUE(m_boxes.Caught().empty());
}

TEST_F(InstallMonitor, TakesAMonitorOfOtherCaseForAnotherOne) {
    WriteText(HKEY_LOCAL_MACHINE, (kMonitorsKey + L"Brimlake KZP Writer PORT"s).c_str(), L"Driver", L"x.dll");
    WriteText(HKEY_LOCAL_MACHINE, (kMonitorsKey + L"Brimlake KZP Writer Port 2"s).c_str(), L"Driver",
              L"x.dll");
    m_session.SetActionData(L"KZPPortMonitor.dll");
    RunOn();
    EXPECT_TRUE(g_added) << "the spooler, not the action, refuses it";
}

TEST_F(InstallMonitor, ReadsANameOfAnyLength) {
    for (const size_t length : {259u, 260u, 300u}) {
        const std::wstring name(length, L'm');
        m_session.SetActionData(name);
        EXPECT_EQ(static_cast<UINT>(ERROR_INSTALL_FAILURE), RunOn()) << "there is no such file";
        ASSERT_TRUE(g_added) << length;
        EXPECT_EQ(name, g_added->dll);
    }
}

TEST_F(InstallMonitor, TouchesNothingWithoutAName) {
    EXPECT_EQ(static_cast<UINT>(ERROR_INSTALL_FAILURE), RunOn());
    m_session.SetActionData(L"");
    EXPECT_EQ(static_cast<UINT>(ERROR_INSTALL_FAILURE), RunOn());
    EXPECT_FALSE(g_added);
    EXPECT_EQ(Lines{}, DescribeMachine());
}

TEST_F(InstallMonitor, TakesAListThatCannotBeReadForAnEmptyOne) {
    spooler::FailCall(L"EnumMonitorsW", ERROR_CANCELLED);
    m_session.SetActionData(L"KZPPortMonitor.dll");
    EXPECT_EQ(0u, RunOn());
}

}  // namespace
}  // namespace kzp::test
