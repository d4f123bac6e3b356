// The package, installed and removed by the platform's own installer.
#include <gtest/gtest.h>
#include <windows.h>

#include <msi.h>
#include <msiquery.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "tests/installer/InstallerRun.h"
#include "tests/installer/MachineState.h"
#include "tests/support/Files.h"
#include "tests/support/ScratchRegistry.h"
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
        for (const std::wstring& product : Products())
            RunInstaller(L"/x " + product);
        // A product that is half gone, as Wine leaves one whose removal failed, would hold its files for
        // ever.
        RegDeleteTreeW(HKEY_LOCAL_MACHINE, kComponentsKey);
        std::filesystem::remove_all(kFolder);
        DeleteFileW(kMonitorFile.c_str());
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
        EXPECT_EQ(Lines{}, DescribeMachine());
        EXPECT_EQ(Lines{}, Files());
    }

    static constexpr wchar_t kComponentsKey[] =
        L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Installer\\UserData\\S-1-5-18\\Components";

    // The product codes of all packages of ours that are installed.
    static Lines Products() {
        Lines products;
        wchar_t code[39] = {};
        while (MsiEnumRelatedProductsW(L"{5D0B1A4E-7C0F-4E57-9D0B-6A0C5F3E2B71}", 0,
                                       static_cast<DWORD>(products.size()), code) == ERROR_SUCCESS)
            products.emplace_back(code);
        return products;
    }

    // The product's files that are there.
    static Lines Files() {
        Lines found;
        for (const wchar_t* const name : {L"KZPWriterUI.dll", L"KZPWriterRes.dll", L"kzpwriter.chm",
                                          L"Driver\\kzpwriter.inf", L"Driver\\kzpwriter.chm"}) {
            if (FileExists(kFolder + name))
                found.emplace_back(name);
        }
        if (FileExists(kMonitorFile))
            found.emplace_back(L"KZPPortMonitor.dll");
        return found;
    }

    inline static const std::wstring kFolder = Folder(L"ProgramW6432") + L"\\Brimlake\\KZP Writer\\";
    inline static const std::wstring kMonitorFile = Folder(L"windir") + L"\\system32\\KZPPortMonitor.dll";
    inline static const Lines kAllFiles = {L"KZPWriterUI.dll",       L"KZPWriterRes.dll",
                                           L"kzpwriter.chm",         L"Driver\\kzpwriter.inf",
                                           L"Driver\\kzpwriter.chm", L"KZPPortMonitor.dll"};

    static std::wstring Install(const wchar_t* package) { return L"/i \"" + BesideExe(package) + L"\""; }

    // That the machine is as it was before the package, the paper form and the settings apart.
    static void ExpectNothingInstalled(const Lines& machine = {}) {
        EXPECT_EQ(machine, DescribeMachine());
        EXPECT_EQ(Lines{}, Files());
        EXPECT_EQ(Lines{}, Products());
        EXPECT_FALSE(KeyExists(HKEY_LOCAL_MACHINE, kProductKey));
    }

    const std::wstring m_install = Install(L"KZPWriter.msi");
    const std::wstring m_remove = L"/x \"" + BesideExe(L"KZPWriter.msi") + L"\"";
    StandInsInSystemFolder m_standIns;
};

// The arguments of the lines that the document gives to administrators, with the package of the tests.
Lines DocumentedLines() {
    Lines lines;
    std::ifstream document{std::filesystem::path(BesideExe(L"installer.md"))};
    for (std::string line; std::getline(document, line);) {
        if (!line.starts_with("msiexec "))
            continue;
        const size_t package = line.find("KZPWriter-"), behind = line.find(".msi") + 4;
        lines.push_back(std::wstring(line.begin() + 8, line.begin() + static_cast<std::ptrdiff_t>(package)) +
                        L"\"" + BesideExe(L"KZPWriter.msi") + L"\"" +
                        std::wstring(line.begin() + static_cast<std::ptrdiff_t>(behind),
                                     line.begin() + static_cast<std::ptrdiff_t>(line.find(" /l*v"))));
    }
    return lines;
}

TEST_F(Package, InstallsOnceRepairsFilesAloneAndRemovesAsDocumented) {
    const Lines documented = DocumentedLines();
    ASSERT_EQ(3u, documented.size()) << "installation, repair, removal";
    StartSpooler();
    const DWORD spoolerBefore = SpoolerProcess();
    const InstallerRun installed = RunInstaller(documented[0]);
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
    const DWORD spoolerAfter = SpoolerProcess();
    EXPECT_NE(0u, spoolerAfter);
    EXPECT_NE(spoolerBefore, spoolerAfter) << "the service was stopped and started";

    spooler::StartLog();
    EXPECT_TRUE(DeleteFileW((kFolder + L"KZPWriterRes.dll").c_str()));
    for (const std::wstring& again : {documented[0], documented[1]}) {
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

    const InstallerRun removed = RunInstaller(documented[2]);
    EXPECT_EQ(0u, removed.exitCode);
    EXPECT_EQ(kUninstallLog, removed.lines);
    EXPECT_EQ(2, removed.Starts(L"Uninstall"));
    EXPECT_EQ(0, removed.Starts(L"Install"));
    ExpectNothingInstalled(MachineAfterRemoval());
    EXPECT_NE(spoolerAfter, SpoolerProcess());
}

TEST_F(Package, UpgradesSilentlyAndRefusesAnOlderVersion) {
    EXPECT_EQ(0u, RunInstaller(Install(L"KZPWriter-3.4.9.msi")).exitCode);
    WriteText(HKEY_CURRENT_USER, kSettingsKey, L"DefaultDir", L"D:\\Out");
    // The same version with other contents is an upgrade, too.
    for (const wchar_t* const package : {L"KZPWriter.msi", L"KZPWriter-other.msi"}) {
        spooler::StartLog();
        const InstallerRun run = RunInstaller(Install(package));
        EXPECT_EQ(0u, run.exitCode);
        EXPECT_EQ(kInstallLog, run.lines) << "the old version's own lines stand in a log of their own";
        EXPECT_EQ(0, run.Starts(L"RemoveLeftovers"));
        EXPECT_EQ(2, run.Starts(L"Install"));
        EXPECT_EQ(1u, Products().size());
        EXPECT_EQ(InstalledMachine(), DescribeMachine());
        EXPECT_EQ(kAllFiles, Files());
        EXPECT_EQ(package == std::wstring(L"KZPWriter-other.msi"),
                  FileExists(kFolder + L"Look & feel\\read me first.txt"));
        EXPECT_EQ(L"D:\\Out", ReadValue(HKEY_CURRENT_USER, kSettingsKey, L"DefaultDir").value().Text());
        const Lines calls = spooler::ReadLog();
        EXPECT_EQ(1, std::count(calls.begin(), calls.end(),
                                L"DeleteMonitorW Brimlake KZP Writer Port, Windows x64"));
    }
    const Lines products = Products();
    spooler::StartLog();
    EXPECT_EQ(static_cast<DWORD>(ERROR_INSTALL_FAILURE),
              RunInstaller(Install(L"KZPWriter-3.4.9.msi")).exitCode);
    EXPECT_EQ(products, Products());
    EXPECT_EQ(InstalledMachine(), DescribeMachine());
    EXPECT_EQ(Lines{}, spooler::ReadLog());
}

TEST_F(Package, ClearsLeftoversFirst) {
    // Without a printer the set-up must not be asked to remove one; the monitor's key goes all the same.
    for (const bool printer : {false, true}) {
        WriteText(HKEY_LOCAL_MACHINE, kMonitorKey, L"Driver", L"KZPPortMonitor.dll");
        if (printer)
            spooler::SetUpPrinter({.name = L"Brimlake KZP Writer"});
        const InstallerRun installed = RunInstaller(m_install);
        EXPECT_EQ(0u, installed.exitCode);
        EXPECT_EQ(printer ? 2 : 0, installed.Starts(L"RemoveLeftovers"));
        EXPECT_EQ(printer ? And(kUninstallWithoutMonitorLog, kInstallLog) : kInstallLog, installed.lines);
        EXPECT_EQ(InstalledMachine(), DescribeMachine());
        Clean();
    }
}

TEST_F(Package, BringsALostPrinterBackByRepairAndIsRemovedWithoutIt) {
    EXPECT_EQ(0u, RunInstaller(m_install).exitCode);
    spooler::RemovePrinter(L"Brimlake KZP Writer");
    const InstallerRun repaired = RunInstaller(m_install + L" REINSTALL=ALL REINSTALLMODE=omus");
    EXPECT_EQ(0u, repaired.exitCode);
    EXPECT_EQ(kInstallLog, repaired.lines) << "the monitor was not in the way";
    EXPECT_EQ(InstalledMachine(), DescribeMachine());

    spooler::RemovePrinter(L"Brimlake KZP Writer");
    // What has become of the files does not matter, either.
    EXPECT_TRUE(DeleteFileW((kFolder + L"KZPWriterUI.dll").c_str()));
    spooler::StartLog();
    const InstallerRun removed = RunInstaller(m_remove);
    EXPECT_EQ(0u, removed.exitCode);
    EXPECT_EQ(Lines{}, spooler::ReadLog()) << "which would show that there is no such printer";
    Lines machine = InstalledMachine();
    machine.erase(machine.begin() + 5);  // the monitor
    machine.erase(machine.begin() + 2);  // the printer
    ExpectNothingInstalled(machine);
}

constexpr wchar_t kSpoolerKey[] = L"SYSTEM\\CurrentControlSet\\Services\\Spooler";

// How the spooler is started is changed while this lives.
struct SpoolerStart {
    SpoolerStart() : m_start(ReadValue(HKEY_LOCAL_MACHINE, kSpoolerKey, L"Start").value().Dword()) {}
    ~SpoolerStart() { Set(m_start); }
    static void Set(DWORD start) { WriteDword(HKEY_LOCAL_MACHINE, kSpoolerKey, L"Start", start); }
    static void Forget() { RegDeleteKeyValueW(HKEY_LOCAL_MACHINE, kSpoolerKey, L"Start"); }

  private:
    DWORD m_start;
};

TEST_F(Package, RefusesWhatWouldEndInAMessageBox) {
    const auto expectRefusal = [](const std::wstring& arguments) {
        const Lines machine = DescribeMachine();
        const Lines files = Files();
        spooler::StartLog();
        const InstallerRun run = RunInstaller(arguments);
        EXPECT_EQ(static_cast<DWORD>(ERROR_INSTALL_FAILURE), run.exitCode);
        EXPECT_EQ(0, run.Starts(L"CostInitialize")) << "it ends with the launch conditions";
        EXPECT_EQ(machine, DescribeMachine());
        EXPECT_EQ(files, Files());
        EXPECT_EQ(Lines{}, spooler::ReadLog());
    };
    spooler::SetUpPrinter({.name = L"Brimlake KZP Writer", .driver = L"Another"});
    expectRefusal(m_install);
    spooler::RemovePrinter(L"Brimlake KZP Writer");
    Clean();

    const SpoolerStart start;
    SpoolerStart::Forget();
    expectRefusal(m_install);
    SpoolerStart::Set(SERVICE_DISABLED);
    expectRefusal(m_install);
    SpoolerStart::Set(SERVICE_DEMAND_START);
    EXPECT_EQ(0u, RunInstaller(m_install).exitCode);
    SpoolerStart::Set(SERVICE_DISABLED);
    expectRefusal(m_remove);
    EXPECT_EQ(0u, RunInstaller(m_install + L" REINSTALL=ALL").exitCode) << "no action would run";
}

// A copy of the package that fails where the property FAILAT says: the action in its data, or an action of
// the copy's own, which gets data that do not fit.
std::wstring MakeFailingPackage(const TemporaryFolder& folder) {
    std::wstring path = folder.Take(L"KZPWriter.msi");
    MSIHANDLE database = 0;
    EXPECT_EQ(0u, MsiOpenDatabaseW(path.c_str(), MSIDBOPEN_TRANSACT, &database));
    const auto insert = [database](const std::wstring& values) {
        MSIHANDLE view = 0;
        EXPECT_EQ(0u, MsiDatabaseOpenViewW(database, (L"INSERT INTO " + values).c_str(), &view));
        EXPECT_EQ(0u, MsiViewExecute(view, 0));
        MsiCloseHandle(view);
    };
    const auto add = [&](const std::wstring& name, const std::wstring& rest, int sequence,
                         const std::wstring& where) {
        insert(L"`CustomAction` (`Action`, `Type`, `Source`, `Target`) VALUES ('" + name + L"', " + rest +
               L")");
        insert(L"`InstallExecuteSequence` (`Action`, `Condition`, `Sequence`) VALUES ('" + name +
               L"', 'FAILAT=\"" + where + L"\"', " + std::to_wstring(sequence) + L")");
    };
    const std::wstring spoilt = L"', '" + std::wstring(300, L'd') + L"'";
    add(L"SpoilInstall", L"51, 'Install" + spoilt, 5205, L"data");
    add(L"SpoilEnd", L"51, 'FailAtEnd" + spoilt, 5980, L"end");
    add(L"FailAtEnd", L"3073, 'PlugIn', 'Install'", 5990, L"end");
    add(L"SpoilRemoval", L"51, 'FailRemoval" + spoilt, 1535, L"removal");
    add(L"FailRemoval", L"3073, 'PlugIn', 'Install'", 1540, L"removal");
    MsiDatabaseCommit(database);
    MsiCloseHandle(database);
    return path;
}

// Wine takes new files and registry values away before the rollback actions run; Windows goes back step
// by step from where it failed. What is expected here holds for both.
TEST_F(Package, LeavesTheMachineAsItWasWhenItFails) {
    const TemporaryFolder folder;
    const std::wstring package = L" \"" + MakeFailingPackage(folder) + L"\"";
    const InstallerRun spoilt = RunInstaller(L"/i" + package + L" FAILAT=data");
    EXPECT_EQ(static_cast<DWORD>(ERROR_INSTALL_FAILURE), spoilt.exitCode);
    EXPECT_EQ(kUninstallWithoutMonitorLog, spoilt.lines) << "from the rollback";
    ExpectNothingInstalled();

    const InstallerRun late = RunInstaller(L"/i" + package + L" FAILAT=end");
    EXPECT_EQ(static_cast<DWORD>(ERROR_INSTALL_FAILURE), late.exitCode);
    ASSERT_LE(3u, late.lines.size());
    EXPECT_EQ(And(kInstallLog, kUninstallLog), Lines(late.lines.begin(), late.lines.begin() + 3));
    ExpectNothingInstalled(MachineAfterRemoval());

    EXPECT_EQ(0u, RunInstaller(L"/i" + package).exitCode);
    const InstallerRun removal = RunInstaller(L"/x" + package + L" FAILAT=removal");
    EXPECT_EQ(static_cast<DWORD>(ERROR_INSTALL_FAILURE), removal.exitCode);
    EXPECT_EQ(And(kUninstallLog, kInstallLog), removal.lines);
    EXPECT_EQ(InstalledMachine(), DescribeMachine());
    EXPECT_EQ(kAllFiles, Files());
}

}  // namespace
}  // namespace kzp::test
