// The action "Install", called as the installer calls it.
#include <algorithm>
#include <cwchar>
#include <set>

#include "resources/resource.h"
#include "tests/installer/ActionTest.h"

namespace kzp::test {
namespace {

using namespace standins;

const Lines kWholeLog = {L"INFO: Printer Spooler service is restarted",
                         L"INFO: Sucessfully created Port Monitor in function AddMonitor.\n"};

std::wstring SetUpCommand(const std::wstring& inf) {
    return L"/if /z /r \"Brimlake KZP Writer Port\" /b \"Brimlake KZP Writer\" /m \"Brimlake KZP Writer\" "
           L"/h \"Intel\" /v \"Windows 2000\" /f \"" +
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
    spooler::StartLog();
    EXPECT_EQ(0u, Run("Install"));
    EXPECT_EQ(InstalledMachine(), DescribeMachine());
    EXPECT_EQ(kWholeLog, m_session.Lines());
    EXPECT_EQ((Lines{L"AddPortExW Brimlake KZP Writer Port",
                     L"AddPortExW KZP:",
                     L"PrintUIEntryW " + SetUpCommand(m_inf),
                     L"AddPrinterDriverW Brimlake KZP Writer",
                     L"AddPrinterW Brimlake KZP Writer",
                     L"open manager for everything",
                     L"open Spooler for everything",
                     L"stop",
                     L"wait 2000",
                     L"store Attributes 66",
                     L"start",
                     L"look",
                     L"log " + kWholeLog[0],
                     L"close service",
                     L"close manager",
                     L"AddFormW User Defined",
                     L"close printer",
                     L"store Publish Directory",
                     L"store Enable ASCII 0",
                     L"AddMonitorW Brimlake KZP Writer Port, Windows x64, KZPPortMonitor.dll",
                     L"log " + kWholeLog[1],
                     L"SetPrinterW 2"}),
              spooler::ReadLog())
        << "the printer of the last step stays open";
    EXPECT_EQ(1u, MsiCloseAllHandles()) << "the session's own; the log's records are closed";
}

int WINAPI LoadAllButTheCaption(HINSTANCE module, UINT id, LPWSTR buffer, int capacity) {
    return id == IDS_INSTALL_ERROR_CAPTION ? 0 : LoadStringW(module, id, buffer, capacity);
}

TEST_F(Install, RepeatedKeepsWhatStandsAndShowsThatTheMonitorDoes) {
    ASSERT_EQ(0u, Run("Install"));
    WriteText(HKEY_CURRENT_USER, kSettingsKey, L"Publish Directory", L"D:\\Out");
    WriteDword(HKEY_CURRENT_USER, kSettingsKey, L"Enable ASCII", 1);
    WriteText(HKEY_LOCAL_MACHINE, kPrinterKey, L"Port", L"KZP:");
    spooler::StartLog();
    EXPECT_EQ(0u, Run("Install"));

    Lines expected = InstalledMachine();
    expected[6] = L"Publish Directory = D:\\Out (type 1, 14 bytes)";
    expected[7] = L"Enable ASCII = 0x1 (type 4, 4 bytes)";
    EXPECT_EQ(expected, DescribeMachine());
    const Lines calls = spooler::ReadLog();
    EXPECT_EQ((Lines{L"show " + Box(IDS_MONITOR_FAILED),
                     L"log ERROR: Failed to create monitor in function AddMonitor. The Error code is: 3006\n",
                     L"SetPrinterW 2"}),
              Lines(calls.end() - 3, calls.end()));

    const ImportPatch untitled(m_plugIn.Module(), "LoadStringW", AddressOf(LoadAllButTheCaption));
    EXPECT_EQ(0u, Run("Install"));
    EXPECT_EQ(L"Error: Failed to create new monitor", m_platform.boxes.back()) << "both texts, or neither";
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
    for (const auto& [data, inf] : cases) {
        m_session.SetActionData(data);
        spooler::StartLog();
        EXPECT_EQ(0u, Run("Install"));
        EXPECT_EQ(L"PrintUIEntryW " + SetUpCommand(inf), spooler::ReadLog()[2]);
    }
}

TEST_F(Install, RefusesDataThatDoNotFitAndTouchesNothing) {
    spooler::StartLog();
    for (const size_t length : {260u, 300u}) {
        m_session.SetActionData(std::wstring(length, L'd'));
        EXPECT_EQ(static_cast<UINT>(ERROR_UNKNOWN_PROPERTY), Run("Install")) << length;
    }
    EXPECT_EQ(Lines{}, DescribeMachine());
    EXPECT_EQ(Lines{}, spooler::ReadLog());
}

TEST_F(Install, MarksAnExistingPrinterForDirectPrinting) {
    const struct {
        DWORD type, stored, result;
    } cases[] = {{REG_DWORD, 0x240, 0x242}, {REG_DWORD, 0x2, 0x2}, {REG_BINARY, 0x240, 0x2}};
    for (const auto& [type, stored, result] : cases) {
        spooler::SetUpPrinter({.name = L"Brimlake KZP Writer"});
        WriteValue(HKEY_LOCAL_MACHINE, kPrinterKey, L"Attributes", type, &stored, sizeof stored);
        WriteText(HKEY_LOCAL_MACHINE, kDirectoryKey, L"printSpooling", L"PrintAfterSpooled");
        spooler::StartLog();
        EXPECT_EQ(0u, Run("Install"));
        const Lines calls = spooler::ReadLog();
        const auto stopped = std::find(calls.begin(), calls.end(), L"wait 2000");
        ASSERT_LE(4, calls.end() - stopped);
        EXPECT_EQ((Lines{L"wait 2000", L"store Attributes " + std::to_wstring(result), L"store printSpooling",
                         L"start"}),
                  Lines(stopped, stopped + 4));
        const auto published = ReadValue(HKEY_LOCAL_MACHINE, kDirectoryKey, L"printSpooling");
        ASSERT_TRUE(published);
        EXPECT_EQ(static_cast<DWORD>(REG_SZ), published->type);
        EXPECT_EQ(L"PrintDirect", published->Text());
        EXPECT_EQ(24u, published->bytes.size());
    }
}

TEST_F(Install, GoesOnWhateverFails) {
    const std::wstring monitor =
        L"log ERROR: Failed to create monitor in function AddMonitor. The Error code is: ";
    const std::wstring printer =
        L"log ERROR: Failed to open printer for port reassignment in function OpenPrinter. The Error code "
        L"is: ";
    const Lines whole = InstalledMachine();
    const struct {
        const wchar_t* function;
        DWORD callsThatPass;
        Lines told;     // behind the spooler's start: boxes and lines, in their order
        Lines missing;  // of the machine's description
    } cases[] = {
        {L"AddFormW", 0, {L"log " + kWholeLog[1]}, {whole[4]}},
        {L"AddMonitorW", 0, {L"show " + Box(IDS_MONITOR_FAILED), monitor + L"1223\n"}, {whole[5]}},
        // The first opening is for the form.
        {L"OpenPrinterW",
         1,
         {L"log " + kWholeLog[1], L"show " + Box(IDS_OPEN_PRINTER_FAILED), printer + L"1223.\n"},
         {}},
        {L"GetPrinterW", 0, {L"log " + kWholeLog[1], L"show " + Box(IDS_GET_PRINTER_FAILED)}, {}},
        {L"SetPrinterW", 0, {L"log " + kWholeLog[1], L"show " + Box(IDS_SET_PORT_FAILED)}, {}},
        // Without its port the printer cannot be set up, so the last step shows that it is not there.
        {L"AddPortExW",
         0,
         {L"log " + kWholeLog[1], L"show " + Box(IDS_OPEN_PRINTER_FAILED), printer + L"1801.\n"},
         {whole[0], whole[1], whole[2], whole[4]}},
    };
    for (const auto& failing : cases) {
        SCOPED_TRACE(testing::Message() << failing.function);
        EXPECT_EQ(0u, Run("Uninstall"));
        spooler::RemoveForm(L"User Defined");
        spooler::FailCall(failing.function, ERROR_CANCELLED, failing.callsThatPass);
        spooler::StartLog();
        EXPECT_EQ(0u, Run("Install"));
        spooler::ClearFailures();
        Lines told = spooler::ReadLog();
        std::erase_if(told, [](const std::wstring& line) {
            return !line.starts_with(L"log ") && !line.starts_with(L"show ");
        });
        EXPECT_EQ(And({L"log " + kWholeLog[0]}, failing.told), told);
        Lines machine = whole;
        std::erase_if(machine, [&](const std::wstring& line) {
            return std::find(failing.missing.begin(), failing.missing.end(), line) != failing.missing.end();
        });
        EXPECT_EQ(machine, DescribeMachine());
    }
}

std::set<std::string> g_notExported;

FARPROC WINAPI FindExported(HMODULE module, LPCSTR name) {
    return g_notExported.contains(name) ? nullptr : GetProcAddress(module, name);
}

TEST_F(Install, LeavesOutWhatTheSystemDoesNotExport) {
    const ImportPatch patch(m_plugIn.Module(), "GetProcAddress", AddressOf(FindExported));
    spooler::StartLog();
    g_notExported = {"MsiGetPropertyW"};
    EXPECT_EQ(static_cast<UINT>(ERROR_UNKNOWN_PROPERTY), Run("Install")) << "nobody tells the INF file";
    EXPECT_EQ(Lines{}, DescribeMachine());
    g_notExported = {"AddPortExW", "PrintUIEntryW", "MsiCreateRecord"};
    EXPECT_EQ(0u, Run("Install"));
    for (const std::wstring& call : spooler::ReadLog())
        EXPECT_FALSE(call.starts_with(L"AddPort") || call.starts_with(L"PrintUI")) << call.size();
    EXPECT_EQ(3u, DescribeMachine().size()) << "the monitor and two settings";
    EXPECT_EQ(Lines{}, m_session.Lines());
}

std::set<std::wstring> g_searched;

HMODULE WINAPI RecordSearch(LPCWSTR name, HANDLE file, DWORD flags) {
    if (!std::wcschr(name, L'\\'))
        g_searched.insert(std::wstring(name) +
                          (flags == LOAD_LIBRARY_SEARCH_SYSTEM32 ? L"" : L", elsewhere"));
    return LoadLibraryExW(name, file, flags);
}

// One of its name stands beside this program, in the current folder and in PATH.
TEST_F(Install, TakesLibrariesFromTheSystemsFolderAlone) {
    const PlugInDll fresh(m_folder.Take(L"KZPWriterUI.dll"));
    PlatformFake services(fresh.Module());
    const ImportPatch load(fresh.Module(), "LoadLibraryExW", AddressOf(RecordSearch));
    m_folder.Take(L"printui.dll");
    SetCurrentDirectoryW(m_folder.Path().c_str());
    SetEnvironmentVariableW(L"PATH", m_folder.Path().c_str());
    g_searched.clear();
    EXPECT_EQ(0u, fresh.Export<UINT(WINAPI*)(MSIHANDLE)>("Install")(m_session.Handle()));
    EXPECT_EQ((std::set<std::wstring>{L"msi.dll", L"printui.dll", L"winspool.drv"}), g_searched);
    SetCurrentDirectoryW(L"C:\\");
}

TEST_F(Install, ShowsBuiltInTextsWithoutTheResourceModule) {
    const PlugInDll alone(m_folder.Take(L"KZPWriterUI.dll"));
    const SystemFolder system(alone.Module(), SystemFolder::StandIns());
    PlatformFake platform(alone.Module());
    const auto install = alone.Export<UINT(WINAPI*)(MSIHANDLE)>("Install");
    const struct {
        const wchar_t* function;
        DWORD callsThatPass;
        std::wstring text;
    } cases[] = {{L"AddMonitorW", 0, L"Error: Failed to create new monitor"},
                 {L"OpenPrinterW", 1, L"Error: Failed to open printer"},
                 {L"GetPrinterW", 0, L"Error: GetPrinter Function Failed."},
                 {L"SetPrinterW", 0, L"Error: Failed to reassign printer port"}};
    for (const auto& [function, callsThatPass, text] : cases) {
        RegDeleteTreeW(HKEY_LOCAL_MACHINE, L"SYSTEM\\CurrentControlSet\\Control\\Print\\Monitors");
        spooler::FailCall(function, ERROR_CANCELLED, callsThatPass);
        EXPECT_EQ(0u, install(m_session.Handle()));
        spooler::ClearFailures();
        EXPECT_EQ(Lines{text}, platform.boxes);
        platform.boxes.clear();
    }
}

}  // namespace
}  // namespace kzp::test
