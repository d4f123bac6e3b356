// The package, installed and removed by the platform's own installer.
#include <gtest/gtest.h>
#include <windows.h>

#include <msi.h>
#include <msiquery.h>

#include "tests/installer/InstallerRun.h"
#include "tests/installer/MachineState.h"
#include "tests/support/Files.h"
#include "tests/support/ScratchRegistry.h"
#include "tools/standins/printui/PrintUIRecords.h"
#include "tools/standins/spooler/SpoolerControl.h"

namespace kzp::test {
namespace {

using namespace standins;

const Lines kInstallLog = {L"INFO: Printer Spooler service is restarted",
                           L"INFO: Sucessfully created Port Monitor in function AddMonitor."};
const Lines kUninstallLog = {L"INFO: Printer Spooler service is restarted"};
const Lines kUninstallWithoutMonitorLog = {
    L"INFO: Printer Spooler service is restarted",
    L"ERROR: Failed to delete new monitor in function DeleteMonitor. The Error code is: 3000"};

std::wstring Folder(const wchar_t* variable) {
    wchar_t path[MAX_PATH] = {};
    GetEnvironmentVariableW(variable, path, MAX_PATH);
    return path;
}

// A machine with the stand-in spooler, without the product before and after.
struct Package : testing::Test {
    Package() { Clean(); }
    ~Package() override { Clean(); }

    static void Clean() {
        if (ReadValue(HKEY_LOCAL_MACHINE, kSettingsKey, L"InstallDir"))
            RunInstaller(L"/x \"" + kPackage + L"\"");
        spooler::ClearFailures();
        spooler::StopLog();
        spooler::RemovePrinter(L"Brimlake KZP Writer");
        spooler::RemovePrinter(L"Brimlake KZP Writer for 2D");  // another printer of the driver, from a demo
        spooler::RemoveForm(L"User Defined");
        for (const wchar_t* const path : {kDriverKey, kMonitorKey, kProductKey})
            RegDeleteTreeW(HKEY_LOCAL_MACHINE, path);
        RegDeleteTreeW(HKEY_CURRENT_USER, kProductKey);
        for (const wchar_t* const port : {L"Brimlake KZP Writer Port", L"KZP:"})
            RegDeleteKeyValueW(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Ports",
                               port);
        printui::ForgetCommands();
        EXPECT_EQ(Lines{}, DescribeMachine());
        EXPECT_EQ(Lines{}, Files());
    }

    // The product's files that are there.
    static Lines Files() {
        Lines found;
        for (const wchar_t* const name : {L"KZPWriterUI.dll", L"KZPWriterRes.dll", L"kzpwriter.chm",
                                          L"Driver\\kzpwriter.inf", L"Driver\\kzpwriter.chm"}) {
            if (FileExists(kFolder + name))
                found.emplace_back(name);
        }
        if (FileExists(Folder(L"windir") + L"\\system32\\KZPPortMonitor.dll"))
            found.emplace_back(L"KZPPortMonitor.dll");
        return found;
    }

    inline static const std::wstring kPackage = BesideExe(L"KZPWriter.msi");
    inline static const std::wstring kFolder = Folder(L"ProgramW6432") + L"\\Brimlake\\KZP Writer\\";
    inline static const Lines kAllFiles = {L"KZPWriterUI.dll",       L"KZPWriterRes.dll",
                                           L"kzpwriter.chm",         L"Driver\\kzpwriter.inf",
                                           L"Driver\\kzpwriter.chm", L"KZPPortMonitor.dll"};

    const std::wstring m_install = L"/i \"" + kPackage + L"\"";
    const std::wstring m_remove = L"/x \"" + kPackage + L"\"";
    StandInsInSystemFolder m_standIns;
};

TEST_F(Package, InstallsOnceRepairsFilesAloneAndRemoves) {
    StartSpooler();
    const DWORD spoolerBefore = SpoolerProcess();
    const InstallerRun installed = RunInstaller(m_install);
    EXPECT_EQ(0u, installed.exitCode);
    EXPECT_EQ(kInstallLog, installed.lines);
    EXPECT_EQ(2, installed.Starts(L"Install"));
    EXPECT_EQ(1, installed.Starts(L"UndoInstall")) << "kept for a rollback, not run";
    EXPECT_EQ(0, installed.Starts(L"RemoveLeftovers"));
    EXPECT_EQ(InstalledMachine(), DescribeMachine());
    EXPECT_EQ(kAllFiles, Files());
    EXPECT_EQ(kFolder, ReadValue(HKEY_LOCAL_MACHINE, kSettingsKey, L"InstallDir").value().Text());
    EXPECT_EQ(kFolder + L"kzpwriter.chm",
              ReadValue(HKEY_LOCAL_MACHINE, kProductKey, L"HelpFilePath").value().Text());
    EXPECT_EQ(Lines{L"/if /z /r \"Brimlake KZP Writer Port\" /b \"Brimlake KZP Writer\" "
                    L"/m \"Brimlake KZP Writer\" /h \"Intel\" /v \"Windows 2000\" /f \"" +
                    kFolder + L"Driver\\kzpwriter.inf\""},
              printui::Commands());
    const DWORD spoolerAfter = SpoolerProcess();
    EXPECT_NE(0u, spoolerAfter);
    EXPECT_NE(spoolerBefore, spoolerAfter) << "the service was stopped and started";

    spooler::StartLog();
    EXPECT_TRUE(DeleteFileW((kFolder + L"KZPWriterRes.dll").c_str()));
    for (const std::wstring& again : {m_install, m_install + L" REINSTALL=ALL REINSTALLMODE=vomus"}) {
        const InstallerRun run = RunInstaller(again);
        EXPECT_EQ(0u, run.exitCode);
        EXPECT_EQ(Lines{}, run.lines);
        for (const wchar_t* const action : {L"Install", L"UndoInstall", L"RemoveLeftovers", L"Uninstall"})
            EXPECT_EQ(0, run.Starts(action)) << action;
    }
    EXPECT_EQ(kAllFiles, Files()) << "the repair brought the missing one back";
    EXPECT_EQ(InstalledMachine(), DescribeMachine());
    EXPECT_EQ(Lines{}, spooler::ReadLog()) << "nothing was asked of the spooler";
    EXPECT_EQ(spoolerAfter, SpoolerProcess());

    const InstallerRun removed = RunInstaller(m_remove);
    EXPECT_EQ(0u, removed.exitCode);
    EXPECT_EQ(kUninstallLog, removed.lines);
    EXPECT_EQ(2, removed.Starts(L"Uninstall"));
    EXPECT_EQ(0, removed.Starts(L"Install"));
    EXPECT_EQ(MachineAfterRemoval(), DescribeMachine());
    EXPECT_EQ(Lines{}, Files());
    EXPECT_FALSE(KeyExists(HKEY_LOCAL_MACHINE, kProductKey));
    EXPECT_NE(spoolerAfter, SpoolerProcess());
}

TEST_F(Package, RemovedFromAMachineWithoutItTouchesNothing) {
    const InstallerRun run = RunInstaller(m_remove);
    EXPECT_EQ(Lines{}, run.lines);
    EXPECT_EQ(0, run.Starts(L"Install"));
    EXPECT_EQ(0, run.Starts(L"Uninstall"));
    EXPECT_EQ(Lines{}, DescribeMachine());
    EXPECT_EQ(Lines{}, Files());
}

TEST_F(Package, ClearsLeftoversFirstAndIsRemovedThoughThePrinterIsGone) {
    WriteText(HKEY_LOCAL_MACHINE, kMonitorKey, L"Driver", L"KZPPortMonitor.dll");
    const InstallerRun installed = RunInstaller(m_install);
    EXPECT_EQ(0u, installed.exitCode);
    EXPECT_EQ(2, installed.Starts(L"RemoveLeftovers"));
    EXPECT_EQ(And(kUninstallLog, kInstallLog), installed.lines) << "no monitor in the way of ours";
    EXPECT_EQ(InstalledMachine(), DescribeMachine());

    spooler::RemovePrinter(L"Brimlake KZP Writer");
    RegDeleteTreeW(HKEY_LOCAL_MACHINE, kMonitorKey);
    const InstallerRun removed = RunInstaller(m_remove);
    EXPECT_EQ(0u, removed.exitCode);
    EXPECT_EQ(kUninstallWithoutMonitorLog, removed.lines);
    EXPECT_EQ(MachineAfterRemoval(), DescribeMachine());
    EXPECT_EQ(Lines{}, Files());
}

// A copy of the package whose action gets data that do not fit.
std::wstring MakeFailingPackage(const TemporaryFolder& folder) {
    std::wstring path = folder.Take(L"KZPWriter.msi");
    MSIHANDLE database = 0;
    MSIHANDLE view = 0;
    EXPECT_EQ(0u, MsiOpenDatabaseW(path.c_str(), MSIDBOPEN_TRANSACT, &database));
    const std::wstring query = L"UPDATE `CustomAction` SET `Target` = '" + std::wstring(300, L'd') +
                               L"' WHERE `Action` = 'SetInstallData'";
    EXPECT_EQ(0u, MsiDatabaseOpenViewW(database, query.c_str(), &view));
    EXPECT_EQ(0u, MsiViewExecute(view, 0));
    MsiCloseHandle(view);
    EXPECT_EQ(0u, MsiDatabaseCommit(database));
    MsiCloseHandle(database);
    return path;
}

TEST_F(Package, IsTakenBackWhenTheActionFails) {
    const TemporaryFolder folder;
    const InstallerRun run = RunInstaller(L"/i \"" + MakeFailingPackage(folder) + L"\"");
    EXPECT_EQ(static_cast<DWORD>(ERROR_INSTALL_FAILURE), run.exitCode);
    EXPECT_EQ(2, run.Starts(L"Install"));
    // Wine has removed the files by then and the action finds no DLL; Windows goes back from the script's
    // end.
    EXPECT_EQ(2, run.Starts(L"UndoInstall"));
    EXPECT_EQ(Lines{}, run.lines);
    EXPECT_EQ(Lines{}, DescribeMachine());
    EXPECT_EQ(Lines{}, Files());
}

}  // namespace
}  // namespace kzp::test
