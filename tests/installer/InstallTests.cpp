// The action "Install", called as the installer calls it.
#include <algorithm>
#include <set>

#include "resources/resource.h"
#include "tests/installer/ActionTest.h"

namespace kzp::test {
namespace {

using namespace standins;

const std::wstring kMonitorAdded = L"log INFO: Sucessfully created Port Monitor in function AddMonitor.\n";
const std::wstring kMonitorFailed =
    L"log ERROR: Failed to create monitor in function AddMonitor. The Error code is: ";
const std::wstring kOpeningFailed =
    L"log ERROR: Failed to open printer for port reassignment in function OpenPrinter. The Error code is: ";

std::wstring SetUpCommand(const std::wstring& inf) {
    return L"PrintUIEntryW /if /z /r \"Brimlake KZP Writer Port\" /b \"Brimlake KZP Writer\" "
           L"/m \"Brimlake KZP Writer\" /h \"Intel\" /v \"Windows 2000\" /f \"" +
           inf + L"\"";
}

struct Install : ActionTest {
    Install() {
        WriteFileText(m_inf, "[Version]\n");
        m_session.SetActionData(m_inf + L";C:\\Other");
    }

    std::wstring m_inf = m_folder.File(L"kzp.inf");
};

TEST_F(Install, SetsUpEverythingInItsOrder) {
    EXPECT_EQ(0u, Run("Install"));
    EXPECT_EQ(InstalledMachine(), DescribeMachine());
    EXPECT_EQ((Lines{L"AddPortExW Brimlake KZP Writer Port",
                     L"AddPortExW KZP:",
                     SetUpCommand(m_inf),
                     L"AddPrinterDriverW Brimlake KZP Writer",
                     L"AddPrinterW Brimlake KZP Writer",
                     L"open manager for everything",
                     L"open Spooler for everything",
                     L"stop",
                     L"wait 2000",
                     L"store Attributes 66",
                     L"start",
                     L"look",
                     kRestarted,
                     L"close service",
                     L"close manager",
                     L"AddFormW User Defined",
                     L"close printer",
                     L"store Publish Directory",
                     L"store Enable ASCII 0",
                     L"AddMonitorW Brimlake KZP Writer Port, Windows x64, KZPPortMonitor.dll",
                     kMonitorAdded,
                     L"SetPrinterW 2"}),
              Log())
        << "the printer of the last step stays open";
    EXPECT_EQ(1u, MsiCloseAllHandles()) << "the session's own; the log's records are closed";
}

TEST_F(Install, RepeatedKeepsWhatStandsAndShowsThatTheMonitorDoes) {
    ASSERT_EQ(0u, Run("Install"));
    WriteText(HKEY_CURRENT_USER, kSettingsKey, L"Publish Directory", L"D:\\Out");
    WriteDword(HKEY_CURRENT_USER, kSettingsKey, L"Enable ASCII", 1);
    WriteText(HKEY_LOCAL_MACHINE, kPrinterKey, L"Port", L"KZP:");
    Log();
    EXPECT_EQ(0u, Run("Install"));
    EXPECT_EQ((Lines{kRestarted, Box(IDS_MONITOR_FAILED), kMonitorFailed + L"3006\n"}), Told());
    Machine expected = InstalledMachine();
    expected[L"directory"] = L"\"D:\\Out\" in 14";
    expected[L"ASCII"] = L" 1";
    EXPECT_EQ(expected, DescribeMachine());
}

TEST_F(Install, TakesTheFirstFieldOfItsDataAsInfPath) {
    const std::wstring longest = L"C:\\" + std::wstring(256, L'd');
    const struct {
        std::wstring data, inf;
    } cases[] = {{L"C:\\Drv\\kzp.inf;C:\\Other", L"C:\\Drv\\kzp.inf"},
                 {L"C:\\Drv\\my kzp.inf", L"C:\\Drv\\my kzp.inf"},
                 {L"C:\\a.inf;b;c", L"C:\\a.inf"},
                 {L";C:\\Other", L""},
                 {longest, longest}};
    for (const size_t length : {260u, 300u}) {
        m_session.SetActionData(std::wstring(length, L'd'));
        EXPECT_EQ(static_cast<UINT>(ERROR_UNKNOWN_PROPERTY), Run("Install")) << length << " do not fit";
        EXPECT_EQ(Lines{}, Log());
    }
    EXPECT_EQ(Machine{}, DescribeMachine());
    for (const auto& [data, inf] : cases) {
        m_session.SetActionData(data);
        EXPECT_EQ(0u, Run("Install"));
        EXPECT_EQ(SetUpCommand(inf), Log()[2]);
    }
}

TEST_F(Install, MarksAnExistingPrinterForDirectPrinting) {
    const struct {
        DWORD type, stored, result;
    } cases[] = {{REG_DWORD, 0x240, 0x242}, {REG_DWORD, 0x2, 0x2}, {REG_BINARY, 0x240, 0x2}};
    for (const auto& [type, stored, result] : cases) {
        spooler::SetUpPrinter({.name = L"Brimlake KZP Writer"});
        WriteValue(HKEY_LOCAL_MACHINE, kPrinterKey, L"Attributes", type, &stored, sizeof stored);
        WriteText(HKEY_LOCAL_MACHINE, kDirectoryKey, L"printSpooling", L"PrintAfterSpooled");
        EXPECT_EQ(0u, Run("Install"));
        const Lines log = Log();
        const Lines wanted = {L"wait 2000", L"store Attributes " + std::to_wstring(result),
                              L"store printSpooling", L"start"};
        EXPECT_TRUE(std::search(log.begin(), log.end(), wanted.begin(), wanted.end()) != log.end())
            << "while the spooler rests";
        EXPECT_EQ(L"\"PrintDirect\" in 24", DescribeMachine()[L"published"]);
    }
}

UINT g_missingText = 0;

int WINAPI LoadTexts(HINSTANCE module, UINT id, LPWSTR buffer, int capacity) {
    return id == g_missingText ? 0 : LoadStringW(module, id, buffer, capacity);
}

TEST_F(Install, GoesOnWhateverFails) {
    const struct {
        const wchar_t* function;
        DWORD callsThatPass;
        UINT box;                // that is shown,
        const wchar_t* builtIn;  // and its text where the resource module has none
        std::wstring logged;
        Lines missing;  // of the machine
    } cases[] = {
        {L"AddFormW", 0, 0, L"", L"", {L"form"}},
        {L"AddMonitorW",
         0,
         IDS_MONITOR_FAILED,
         L"Failed to create new monitor",
         kMonitorFailed + L"1223\n",
         {L"monitor"}},
        // The first opening is for the form.
        {L"OpenPrinterW",
         1,
         IDS_OPEN_PRINTER_FAILED,
         L"Failed to open printer",
         kOpeningFailed + L"1223.\n",
         {}},
        {L"GetPrinterW", 0, IDS_GET_PRINTER_FAILED, L"GetPrinter Function Failed.", L"", {}},
        {L"SetPrinterW", 0, IDS_SET_PORT_FAILED, L"Failed to reassign printer port", L"", {}},
        // Without its port the printer cannot be set up, so the last step shows that it is not there.
        {L"AddPortExW",
         0,
         IDS_OPEN_PRINTER_FAILED,
         L"Failed to open printer",
         kOpeningFailed + L"1801.\n",
         {L"main", L"second", L"printer", L"form"}},
    };
    const ImportPatch texts(m_plugIn.Module(), "LoadStringW", AddressOf(LoadTexts));
    for (const auto& [function, callsThatPass, box, builtIn, logged, missing] : cases) {
        // Both texts of a box, or neither.
        for (const UINT missingText : {UINT{0}, box, UINT{IDS_INSTALL_ERROR_CAPTION}}) {
            SCOPED_TRACE(testing::Message() << function << missingText);
            Run("Uninstall");
            spooler::RemoveForm(L"User Defined");
            Log();
            g_missingText = missingText;
            spooler::FailCall(function, ERROR_CANCELLED, callsThatPass);
            EXPECT_EQ(0u, Run("Install"));
            spooler::ClearFailures();
            Lines told = {kRestarted};
            if (box != IDS_MONITOR_FAILED)
                told.push_back(kMonitorAdded);
            if (box)
                told.push_back(missingText ? L"show Error: " + std::wstring(builtIn) : Box(box));
            if (!logged.empty())
                told.push_back(logged);
            EXPECT_EQ(told, Told());
            EXPECT_EQ(InstalledMachine(missing), DescribeMachine());
        }
    }
}

std::set<std::string> g_notExported;

FARPROC WINAPI FindExported(HMODULE module, LPCSTR name) {
    return g_notExported.contains(name) ? nullptr : GetProcAddress(module, name);
}

TEST_F(Install, LeavesOutWhatTheSystemDoesNotExport) {
    const ImportPatch patch(m_plugIn.Module(), "GetProcAddress", AddressOf(FindExported));
    g_notExported = {"MsiGetPropertyW"};
    EXPECT_EQ(static_cast<UINT>(ERROR_UNKNOWN_PROPERTY), Run("Install")) << "nobody tells the INF file";
    EXPECT_EQ(Lines{}, Log());
    g_notExported = {"AddPortExW", "PrintUIEntryW", "MsiCreateRecord"};
    EXPECT_EQ(0u, Run("Install"));
    EXPECT_EQ(L"open manager for everything", Log().front()) << "no port, no set-up";
    EXPECT_EQ(InstalledMachine({L"main", L"second", L"printer", L"driver", L"form"}), DescribeMachine());
}

}  // namespace
}  // namespace kzp::test
