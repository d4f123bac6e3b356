// The package, installed and removed by the platform's own installer.
#include <gtest/gtest.h>
#include <windows.h>

#include <msi.h>
#include <msiquery.h>
#include <process.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <stdexcept>

#include "support/UniqueHandle.h"
#include "tests/installer/MachineState.h"
#include "tests/support/Files.h"
#include "tests/support/ScratchRegistry.h"
#include "tools/standins/spooler/SpoolerControl.h"

namespace kzp::test {
namespace {

using namespace standins;

const std::wstring kRestarted = L"INFO: Printer Spooler service is restarted";
const std::wstring kMonitorAdded = L"INFO: Sucessfully created Port Monitor in function AddMonitor.";
const std::wstring kNoMonitor =
    L"ERROR: Failed to delete new monitor in function DeleteMonitor. The Error code is: 3000";

const std::wstring kSystemFolder = _wgetenv(L"windir") + std::wstring(L"\\system32\\");
const std::wstring kFolder = _wgetenv(L"ProgramW6432") + std::wstring(L"\\Brimlake\\KZP Writer\\");
const std::wstring kLog = _wgetenv(L"TEMP") + std::wstring(L"\\kzpwriter-installer.log");
const std::wstring kAllFiles[] = {kFolder + L"KZPWriterUI.dll",       kFolder + L"KZPWriterRes.dll",
                                  kFolder + L"kzpwriter.chm",         kFolder + L"Driver\\kzpwriter.inf",
                                  kFolder + L"Driver\\kzpwriter.chm", kSystemFolder + L"KZPPortMonitor.dll"};

// The product codes of all packages of ours that are installed.
Lines Products() {
    Lines products;
    wchar_t code[39] = {};
    while (MsiEnumRelatedProductsW(L"{5D0B1A4E-7C0F-4E57-9D0B-6A0C5F3E2B71}", 0,
                                   static_cast<DWORD>(products.size()), code) == ERROR_SUCCESS)
        products.emplace_back(code);
    return products;
}

// Runs "msiexec <arguments> /qn"; answers its exit code. A run that waits on a message box is ended, and
// answers WAIT_TIMEOUT.
DWORD RunInstaller(const std::wstring& arguments) {
    const intptr_t started = _wspawnl(_P_NOWAIT, (kSystemFolder + L"msiexec.exe").c_str(), L"msiexec",
                                      (arguments + L" /qn /l*v \"" + kLog + L"\"").c_str(), nullptr);
    const UniqueKernelHandle process(reinterpret_cast<HANDLE>(started));
    if (WaitForSingleObject(process.Get(), 30'000) != WAIT_OBJECT_0)
        TerminateProcess(process.Get(), WAIT_TIMEOUT);
    WaitForSingleObject(process.Get(), INFINITE);
    DWORD exitCode = 0;
    GetExitCodeProcess(process.Get(), &exitCode);
    return exitCode;
}

// The actions' own in the log of the last run, from "INFO: " or "ERROR: " to the line's end. The log is in
// the machine's code page; what is looked for is plain ASCII.
Lines LogLines() {
    Lines lines;
    std::ifstream log{std::filesystem::path(kLog)};
    for (std::string line; std::getline(log, line);) {
        const size_t start = std::min(line.find("INFO: "), line.find("ERROR: "));
        if (start != std::string::npos)
            lines.emplace_back(line.begin() + static_cast<ptrdiff_t>(start), line.end());
    }
    return lines;
}

// What a run of the installer comes to.
struct Outcome {
    Lines lines = {};
    Machine machine = InstalledMachine();
    bool product = true;  // is installed, with all its files
    DWORD exitCode = ERROR_SUCCESS;
};

void ExpectMachine(const Machine& machine, bool product) {
    EXPECT_EQ(machine, DescribeMachine());
    for (const std::wstring& file : kAllFiles)
        EXPECT_EQ(product, FileExists(file)) << testing::PrintToString(file);
    EXPECT_EQ(product, KeyExists(HKEY_LOCAL_MACHINE, kProductKey));
}

void Expect(const std::wstring& arguments, const Outcome& outcome) {
    SCOPED_TRACE(testing::PrintToString(arguments));
    const DWORD exitCode = RunInstaller(arguments);
    if (exitCode == WAIT_TIMEOUT)
        throw std::runtime_error("msiexec hangs");  // which ends the test
    EXPECT_EQ(outcome.exitCode, exitCode);
    EXPECT_EQ(outcome.lines, LogLines());
    ExpectMachine(outcome.machine, outcome.product);
}

const Outcome kInstalled = {.lines = {kRestarted, kMonitorAdded}};
constexpr wchar_t kSaved[] = L".platform";

// A machine without the product before and after, with the stand-in spooler and printer set-up where the
// installer's processes find them.
struct Package : testing::Test {
    Package() {
        for (const wchar_t* const name : {L"winspool.drv", L"printui.dll"}) {
            const std::wstring file = kSystemFolder + name;
            // A run that was killed has left the stand-in there.
            if (!FileExists(file + kSaved))
                MoveFileW(file.c_str(), (file + kSaved).c_str());
            EXPECT_TRUE(CopyFileW(BesideExe(name).c_str(), file.c_str(), FALSE)) << GetLastError();
        }
        Clean();
    }
    ~Package() override {
        Clean();
        for (const wchar_t* const name : {L"winspool.drv", L"printui.dll"}) {
            const std::wstring file = kSystemFolder + name;
            EXPECT_TRUE(MoveFileExW((file + kSaved).c_str(), file.c_str(), MOVEFILE_REPLACE_EXISTING));
        }
    }

    static void Clean() {
        for (const std::wstring& product : Products())
            RunInstaller(L"/x " + product);
        std::filesystem::remove_all(kFolder);
        DeleteFileW(std::end(kAllFiles)[-1].c_str());
        spooler::StopLog();
        // A product that is half gone, as Wine leaves one whose removal failed, would hold its files for
        // ever; another printer of the driver, from a demo, would hold that.
        for (const wchar_t* const key :
             {L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Installer\\UserData\\S-1-5-18\\Components",
              kQueueKey, kPrinterKey, kDriverKey, kMonitorKey, kProductKey})
            DeleteKey(HKEY_LOCAL_MACHINE, key);
        DeleteKey(HKEY_CURRENT_USER, kProductKey);
        for (const Part& part : kParts)
            RegDeleteKeyValueW(part.root, part.key, part.value);
        ExpectMachine({}, false);
    }

    static std::wstring Install(const wchar_t* package) { return L"/i \"" + BesideExe(package) + L"\""; }

    const std::wstring m_install = Install(L"KZPWriter.msi");
};

// The arguments of the lines that the document gives to administrators, with the package of the tests.
Lines DocumentedLines() {
    Lines lines;
    std::ifstream document{std::filesystem::path(BesideExe(L"installer.md"))};
    for (std::string line; std::getline(document, line);) {
        std::smatch parts;
        if (std::regex_match(line, parts, std::regex("msiexec (.*)KZPWriter-.*\\.msi(.*) /l\\*v.*")))
            lines.push_back(std::wstring(parts[1].first, parts[1].second) + L"\"" +
                            BesideExe(L"KZPWriter.msi") + L"\"" +
                            std::wstring(parts[2].first, parts[2].second));
    }
    return lines;
}

TEST_F(Package, InstallsOnceIsUpgradedRepairedAndRemovedAsDocumented) {
    const Lines documented = DocumentedLines();
    ASSERT_EQ(3u, documented.size()) << "installation, repair, removal";
    Expect(Install(L"KZPWriter-3.4.9.msi"), kInstalled);
    WriteText(HKEY_CURRENT_USER, kSettingsKey, L"DefaultDir", L"D:\\Out");
    // The same version with other contents is an upgrade, too.
    for (const std::wstring& newer : {Install(L"KZPWriter-other.msi"), documented[0]}) {
        spooler::StartLog();
        Expect(newer, kInstalled);  // the old version's own lines stand in a log of their own
        EXPECT_EQ(1, std::ranges::count(spooler::ReadLog(), L"DeletePrinter"));
        EXPECT_EQ(newer != documented[0], FileExists(kFolder + L"Look & feel\\read me first.txt"));
    }
    EXPECT_EQ(1u, Products().size());
    EXPECT_EQ(L"D:\\Out", ReadValue(HKEY_CURRENT_USER, kSettingsKey, L"DefaultDir").value().Text());
    EXPECT_EQ(kFolder, ReadValue(HKEY_LOCAL_MACHINE, kSettingsKey, L"InstallDir").value().Text());
    EXPECT_EQ(kFolder + L"kzpwriter.chm",
              ReadValue(HKEY_LOCAL_MACHINE, kProductKey, L"HelpFilePath").value().Text());

    spooler::StartLog();
    Expect(documented[0], {});
    EXPECT_TRUE(DeleteFileW(kAllFiles[1].c_str()));
    Expect(documented[1], {});
    EXPECT_EQ(Lines{}, spooler::ReadLog()) << "a printer that stands is left alone";
    spooler::RemovePrinter(L"Brimlake KZP Writer");
    Expect(documented[1], kInstalled);
    Expect(documented[2], {.lines = {kRestarted}, .machine = MachineAfterRemoval(), .product = false});
}

TEST_F(Package, ClearsLeftoversFirstAndIsRemovedWithoutItsPrinter) {
    WriteText(HKEY_LOCAL_MACHINE, kMonitorKey, L"Driver", L"KZPPortMonitor.dll");
    spooler::SetUpPrinter({.name = L"Brimlake KZP Writer"});
    Expect(m_install, {.lines = {kRestarted, kNoMonitor, kRestarted, kMonitorAdded}});
    spooler::RemovePrinter(L"Brimlake KZP Writer");
    // What has become of the files does not matter, either.
    EXPECT_TRUE(DeleteFileW(kAllFiles[0].c_str()));
    spooler::StartLog();
    Expect(L"/x " + Products()[0], {.machine = InstalledMachine({L"printer", L"monitor"}), .product = false});
    EXPECT_EQ(Lines{}, spooler::ReadLog()) << "the set-up would show that there is no such printer";
}

// A copy of the package; where the property FAIL is set, its removal fails behind the plug-in's action.
std::wstring MakeFailingPackage(const TemporaryFolder& folder) {
    std::wstring path = folder.Take(L"KZPWriter.msi");
    MSIHANDLE database = 0;
    EXPECT_EQ(0u, MsiOpenDatabaseW(path.c_str(), MSIDBOPEN_TRANSACT, &database));
    for (const wchar_t* const insert :
         {L"INSERT INTO `CustomAction` (`Action`, `Type`, `Source`, `Target`) "
          L"VALUES ('Fail', 1058, 'TARGETDIR', 'cmd /c exit 1')",
          L"INSERT INTO `InstallExecuteSequence` (`Action`, `Condition`, `Sequence`) "
          L"VALUES ('Fail', 'FAIL', 1540)"}) {
        MSIHANDLE view = 0;
        EXPECT_EQ(0u, MsiDatabaseOpenViewW(database, insert, &view));
        EXPECT_EQ(0u, MsiViewExecute(view, 0));
        MsiCloseHandle(view);
    }
    MsiDatabaseCommit(database);
    MsiCloseHandle(database);
    return L" \"" + path + L"\"";
}

// Wine takes new files and registry values away before the rollback actions run; Windows goes back step
// by step from where it failed. What is expected here holds for both.
TEST_F(Package, LeavesTheMachineAsItWasWhenItRefusesOrFails) {
    spooler::SetUpPrinter({.name = L"Brimlake KZP Writer", .driver = L"Another"});
    Expect(m_install, {.machine = DescribeMachine(), .product = false, .exitCode = ERROR_INSTALL_FAILURE});
    Clean();
    // With it the action's data do not fit.
    const std::wstring folder = L" INSTALLDIR=C:\\" + std::wstring(150, L'd');
    Expect(m_install + folder, {.lines = {kRestarted, kNoMonitor},  // from the rollback
                                .machine = {},
                                .product = false,
                                .exitCode = ERROR_INSTALL_FAILURE});

    const TemporaryFolder copies;
    const std::wstring package = MakeFailingPackage(copies);
    Expect(L"/i" + package, kInstalled);
    Expect(L"/x" + package + L" FAIL=1",
           {.lines = {kRestarted, kRestarted, kMonitorAdded},
            .exitCode = ERROR_FUNCTION_FAILED});  // Wine's; Windows answers 1603
}

}  // namespace
}  // namespace kzp::test
