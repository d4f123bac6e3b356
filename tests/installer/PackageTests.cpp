// The package, installed and removed by the platform's own installer.
#include <gtest/gtest.h>
#include <windows.h>

#include <msi.h>
#include <msiquery.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>

#include "tests/installer/InstallerRun.h"
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

std::wstring Folder(const wchar_t* variable) {
    wchar_t path[MAX_PATH] = {};
    GetEnvironmentVariableW(variable, path, MAX_PATH);
    return path;
}

const std::wstring kFolder = Folder(L"ProgramW6432") + L"\\Brimlake\\KZP Writer\\";
const std::wstring kAllFiles[] = {
    kFolder + L"KZPWriterUI.dll",       kFolder + L"KZPWriterRes.dll",
    kFolder + L"kzpwriter.chm",         kFolder + L"Driver\\kzpwriter.inf",
    kFolder + L"Driver\\kzpwriter.chm", Folder(L"windir") + L"\\system32\\KZPPortMonitor.dll"};

// The product codes of all packages of ours that are installed.
Lines Products() {
    Lines products;
    wchar_t code[39] = {};
    while (MsiEnumRelatedProductsW(L"{5D0B1A4E-7C0F-4E57-9D0B-6A0C5F3E2B71}", 0,
                                   static_cast<DWORD>(products.size()), code) == ERROR_SUCCESS)
        products.emplace_back(code);
    return products;
}

// What a run of the installer comes to.
struct Outcome {
    Lines lines = {};
    std::wstring started = {};
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
    const InstallerRun run = RunInstaller(arguments);
    EXPECT_EQ(outcome.exitCode, run.exitCode);
    EXPECT_EQ(outcome.lines, run.lines);
    EXPECT_EQ(outcome.started, run.started);
    ExpectMachine(outcome.machine, outcome.product);
    // Wine forgets a product whose removal failed.
    if (outcome.exitCode == ERROR_SUCCESS) {
        EXPECT_EQ(outcome.product ? 1u : 0u, Products().size());
    }
}

const Outcome kInstalled = {.lines = {kRestarted, kMonitorAdded}, .started = L"UndoInstall Install Install"};
const Outcome kRemoved = {.lines = {kRestarted},
                          .started = L"Uninstall Uninstall",
                          .machine = MachineAfterRemoval(),
                          .product = false};

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
        DeleteFileW(std::end(kAllFiles)[-1].c_str());
        spooler::ClearFailures();
        spooler::StopLog();
        spooler::RemovePrinter(L"Brimlake KZP Writer");
        spooler::RemovePrinter(L"Brimlake KZP Writer for 2D");  // another printer of the driver, from a demo
        spooler::RemoveForm(L"User Defined");
        for (const wchar_t* const path : {kDriverKey, kMonitorKey, kProductKey})
            RegDeleteTreeW(HKEY_LOCAL_MACHINE, path);
        RegDeleteTreeW(HKEY_CURRENT_USER, kProductKey);
        for (const wchar_t* const port : {L"Brimlake KZP Writer Port", L"KZP:"})
            RegDeleteKeyValueW(HKEY_LOCAL_MACHINE, kPortsKey, port);
        ExpectMachine({}, false);
    }

    static constexpr wchar_t kComponentsKey[] =
        L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Installer\\UserData\\S-1-5-18\\Components";

    static std::wstring Install(const wchar_t* package) { return L"/i \"" + BesideExe(package) + L"\""; }

    const std::wstring m_install = Install(L"KZPWriter.msi");
    const std::wstring m_remove = L"/x \"" + BesideExe(L"KZPWriter.msi") + L"\"";
    StandInsInSystemFolder m_standIns;
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

TEST_F(Package, InstallsOnceRepairsFilesAloneAndRemovesAsDocumented) {
    const Lines documented = DocumentedLines();
    ASSERT_EQ(3u, documented.size()) << "installation, repair, removal";
    Expect(documented[0], kInstalled);
    EXPECT_EQ(kFolder, ReadValue(HKEY_LOCAL_MACHINE, kSettingsKey, L"InstallDir").value().Text());
    EXPECT_EQ(kFolder + L"kzpwriter.chm",
              ReadValue(HKEY_LOCAL_MACHINE, kProductKey, L"HelpFilePath").value().Text());
    spooler::StartLog();
    Expect(documented[0], {});
    EXPECT_TRUE(DeleteFileW(kAllFiles[1].c_str()));
    Expect(documented[1], {});
    EXPECT_EQ(Lines{}, spooler::ReadLog()) << "nothing was asked of the spooler";
    Expect(documented[2], kRemoved);
}

TEST_F(Package, UpgradesSilentlyAndRefusesAnOlderVersion) {
    Expect(Install(L"KZPWriter-3.4.9.msi"), kInstalled);
    WriteText(HKEY_CURRENT_USER, kSettingsKey, L"DefaultDir", L"D:\\Out");
    // The same version with other contents is an upgrade, too.
    for (const wchar_t* const package : {L"KZPWriter.msi", L"KZPWriter-other.msi"}) {
        spooler::StartLog();
        Expect(Install(package), kInstalled);  // the old version's own lines stand in a log of their own
        EXPECT_EQ(package == std::wstring(L"KZPWriter-other.msi"),
                  FileExists(kFolder + L"Look & feel\\read me first.txt"));
        EXPECT_EQ(L"D:\\Out", ReadValue(HKEY_CURRENT_USER, kSettingsKey, L"DefaultDir").value().Text());
        EXPECT_EQ(1, std::ranges::count(spooler::ReadLog(),
                                        L"DeleteMonitorW Brimlake KZP Writer Port, Windows x64"));
    }
    const Lines products = Products();
    spooler::StartLog();
    Expect(Install(L"KZPWriter-3.4.9.msi"), {.exitCode = ERROR_INSTALL_FAILURE});
    EXPECT_EQ(products, Products());
    EXPECT_EQ(Lines{}, spooler::ReadLog());
}

TEST_F(Package, ClearsLeftoversFirst) {
    // Without a printer the set-up must not be asked to remove one; the monitor's key goes all the same.
    WriteText(HKEY_LOCAL_MACHINE, kMonitorKey, L"Driver", L"KZPPortMonitor.dll");
    Expect(m_install, kInstalled);
    Clean();
    WriteText(HKEY_LOCAL_MACHINE, kMonitorKey, L"Driver", L"KZPPortMonitor.dll");
    spooler::SetUpPrinter({.name = L"Brimlake KZP Writer"});
    Expect(m_install, {.lines = {kRestarted, kNoMonitor, kRestarted, kMonitorAdded},
                       .started = L"RemoveLeftovers UndoInstall Install RemoveLeftovers Install"});
}

TEST_F(Package, BringsALostPrinterBackByRepairAndIsRemovedWithoutIt) {
    Expect(m_install, kInstalled);
    spooler::RemovePrinter(L"Brimlake KZP Writer");
    // The monitor is not in the way.
    Expect(m_install + L" REINSTALL=ALL REINSTALLMODE=omus",
           {.lines = kInstalled.lines, .started = L"Install Install"});

    spooler::RemovePrinter(L"Brimlake KZP Writer");
    // What has become of the files does not matter, either.
    EXPECT_TRUE(DeleteFileW(kAllFiles[0].c_str()));
    spooler::StartLog();
    Expect(m_remove, {.machine = InstalledMachine({L"printer", L"monitor"}), .product = false});
    EXPECT_EQ(Lines{}, spooler::ReadLog()) << "the set-up would show that there is no such printer";
}

constexpr wchar_t kSpoolerKey[] = L"SYSTEM\\CurrentControlSet\\Services\\Spooler";

// How the spooler is started is changed while this lives.
struct SpoolerStart {
    SpoolerStart() : m_start(ReadValue(HKEY_LOCAL_MACHINE, kSpoolerKey, L"Start").value().Dword()) {}
    ~SpoolerStart() { Set(m_start); }
    static void Set(DWORD start) { WriteDword(HKEY_LOCAL_MACHINE, kSpoolerKey, L"Start", start); }

  private:
    DWORD m_start;
};

TEST_F(Package, RefusesWhatWouldEndInAMessageBox) {
    const auto expectRefusal = [](const std::wstring& arguments, bool product) {
        spooler::StartLog();
        Expect(arguments,
               {.machine = DescribeMachine(), .product = product, .exitCode = ERROR_INSTALL_FAILURE});
        EXPECT_EQ(Lines{}, spooler::ReadLog());
    };
    spooler::SetUpPrinter({.name = L"Brimlake KZP Writer", .driver = L"Another"});
    expectRefusal(m_install, false);
    Clean();

    const SpoolerStart start;
    RegDeleteKeyValueW(HKEY_LOCAL_MACHINE, kSpoolerKey, L"Start");
    expectRefusal(m_install, false);
    SpoolerStart::Set(SERVICE_DISABLED);
    expectRefusal(m_install, false);
    SpoolerStart::Set(SERVICE_DEMAND_START);
    Expect(m_install, kInstalled);
    SpoolerStart::Set(SERVICE_DISABLED);
    expectRefusal(m_remove, true);
    Expect(m_install + L" REINSTALL=ALL", {});  // no action runs
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
    Expect(L"/i" + package + L" FAILAT=data", {.lines = {kRestarted, kNoMonitor},  // from the rollback
                                               .started = L"UndoInstall Install Install UndoInstall",
                                               .machine = {},
                                               .product = false,
                                               .exitCode = ERROR_INSTALL_FAILURE});

    const InstallerRun late = RunInstaller(L"/i" + package + L" FAILAT=end");
    EXPECT_EQ(static_cast<DWORD>(ERROR_INSTALL_FAILURE), late.exitCode);
    ASSERT_LE(3u, late.lines.size());
    EXPECT_EQ((Lines{kRestarted, kMonitorAdded, kRestarted}),
              Lines(late.lines.begin(), late.lines.begin() + 3));
    ExpectMachine(MachineAfterRemoval(), false);

    Expect(L"/i" + package, kInstalled);
    Expect(L"/x" + package + L" FAILAT=removal", {.lines = {kRestarted, kRestarted, kMonitorAdded},
                                                  .started = L"Uninstall Uninstall",
                                                  .exitCode = ERROR_INSTALL_FAILURE});
}

}  // namespace
}  // namespace kzp::test
