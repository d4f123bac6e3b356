// The action "Install": sets the printer up after the installer has copied its files.
#include <windows.h>

#include <msi.h>

#include <algorithm>
#include <memory>
#include <string>
#include <utility>

#include "core/DebugTrace.h"
#include "installer/InstallNames.h"
#include "installer/InstallerLog.h"
#include "installer/PortMonitor.h"
#include "installer/PrinterSetup.h"
#include "installer/SpoolerService.h"
#include "resources/resource.h"
#include "settings/SettingsStore.h"
#include "settings/SpoolerForms.h"
#include "support/RegistryKey.h"
#include "support/Spooler.h"
#include "support/SystemLibrary.h"

namespace kzp {

namespace {

constexpr wchar_t kPrinterKey[] = L"SYSTEM\\CurrentControlSet\\Control\\Print\\Printers\\Brimlake KZP Writer";
constexpr wchar_t kDirectoryKey[] =
    L"SYSTEM\\CurrentControlSet\\Control\\Print\\Printers\\Brimlake KZP Writer\\DsSpooler";
constexpr wchar_t kAttributes[] = L"Attributes";               // REG_DWORD: PRINTER_ATTRIBUTE_*
constexpr wchar_t kPrintSpooling[] = L"printSpooling";         // REG_SZ, published in the directory
constexpr wchar_t kPublishDirectory[] = L"Publish Directory";  // REG_SZ, stored without data
constexpr wchar_t kEnableAscii[] = L"Enable ASCII";            // REG_DWORD

// 8.5 by 11 inches; the sheet itself makes the form half an inch shorter when it is missing.
constexpr LONG kFormWidthTenthMm = 2159;
constexpr LONG kFormHeightTenthMm = 2794;

constexpr InstallFailure kOpenPrinterFailed = {IDS_OPEN_PRINTER_FAILED, L"Failed to open printer"};
constexpr InstallFailure kGetPrinterFailed = {IDS_GET_PRINTER_FAILED, L"GetPrinter Function Failed."};
constexpr InstallFailure kSetPortFailed = {IDS_SET_PORT_FAILED, L"Failed to reassign printer port"};

// The driver's INF file: the first of the ";"-separated fields that the package passes. Answers false when
// they do not fit into MAX_PATH characters.
bool ReadInfPath(MSIHANDLE hInstall, std::wstring& infPath) {
    wchar_t data[MAX_PATH] = {};
    DWORD characters = MAX_PATH;
    if (GetInstallerProperty(hInstall, kActionData, data, characters) != ERROR_SUCCESS)
        return false;
    infPath = data;
    infPath.resize(std::min(infPath.size(), infPath.find(L';')));
    return true;
}

// Ports that stand already are as good as new ones, so nothing is checked.
void AddPorts() {
    using AddPort = BOOL(WINAPI*)(LPWSTR server, DWORD level, LPBYTE record, LPWSTR monitor);
    const UniqueModule spooler = LoadSystemLibrary(L"winspool.drv");
    // In no import library: the spooler exports it for set-up programs that ask by name.
    const auto addPort = FindFunction<AddPort>(spooler, "AddPortExW");
    if (!addPort)
        return;
    for (const wchar_t* const name : {kMainPortName, kSecondPortName}) {
        PORT_INFO_1W port = {SpoolerText(name)};
        addPort(nullptr, 1, reinterpret_cast<BYTE*>(&port), SpoolerText(kPortOwner));
    }
}

// Not shared, on the main port, with the driver from the INF file.
void InstallPrinter(const std::wstring& infPath) {
    PrinterSetup().Run(
        L"/if /z /r \"Brimlake KZP Writer Port\" /b \"Brimlake KZP Writer\" /m \"Brimlake KZP Writer\" "
        L"/h \"Intel\" /v \"Windows 2000\" /f \"" +
        infPath + L"\"");
}

// Behind the spooler's back, which is why it must not run meanwhile: it reads these values when it starts.
void SetDirectPrinting() {
    if (const auto key = RegistryKey::Open(HKEY_LOCAL_MACHINE, kPrinterKey, KEY_ALL_ACCESS)) {
        DWORD attributes = 0;
        DWORD bytes = sizeof attributes;
        DWORD type = REG_NONE;
        if (key.Query(kAttributes, &attributes, &bytes, &type) != ERROR_SUCCESS || type != REG_DWORD)
            attributes = 0;
        key.SetDword(kAttributes, attributes | PRINTER_ATTRIBUTE_DIRECT);
    }
    if (const auto key = RegistryKey::Open(HKEY_LOCAL_MACHINE, kDirectoryKey, KEY_ALL_ACCESS)) {
        constexpr wchar_t kPrintDirect[] = L"PrintDirect";
        key.Set(kPrintSpooling, REG_SZ, kPrintDirect, sizeof kPrintDirect);
    }
}

bool IsMissing(const RegistryKey& key, const wchar_t* name) {
    return key.Query(name, nullptr, nullptr) == ERROR_FILE_NOT_FOUND;
}

void SeedUserSettings() {
    const auto key = RegistryKey::Create(HKEY_CURRENT_USER, kSettingsKey, KEY_ALL_ACCESS);
    if (!key)
        return;
    if (IsMissing(key, kPublishDirectory))
        key.Set(kPublishDirectory, REG_SZ, nullptr, 0);
    if (IsMissing(key, kEnableAscii))
        key.SetDword(kEnableAscii, 0);
}

// The set-up may have left the printer on another port, since the monitor comes last.
void ReassignPrinterPort(MSIHANDLE hInstall) {
    UniquePrinter owned = OpenPrinterWithAllAccess(kPrinterName);
    if (!owned) {
        const DWORD error = GetLastError();
        ShowInstallFailure(kOpenPrinterFailed);
        LogInstallError(hInstall,
                        L"ERROR: Failed to open printer for port reassignment in function OpenPrinter. "
                        L"The Error code is: [1].\n",
                        error);
        return;
    }
    // Deliberately never closed: the handle stays open until the installer's process ends.
    const HANDLE printer = owned.Release();

    DWORD bytes = 0;
    GetPrinterW(printer, 2, nullptr, 0, &bytes);
    const auto buffer = std::make_unique<BYTE[]>(std::max<size_t>(bytes, sizeof(PRINTER_INFO_2W)));
    if (!GetPrinterW(printer, 2, buffer.get(), bytes, &bytes)) {
        ShowInstallFailure(kGetPrinterFailed);
        return;
    }
    reinterpret_cast<PRINTER_INFO_2W*>(buffer.get())->pPortName = SpoolerText(kMainPortName);
    if (!SetPrinterW(printer, 2, buffer.get(), 0))
        ShowInstallFailure(kSetPortFailed);
}

}  // namespace

}  // namespace kzp

// Answers ERROR_UNKNOWN_PROPERTY, with nothing touched, when its data cannot be read, and ERROR_SUCCESS
// otherwise: a printer that came out incomplete is deliberately no reason to roll the product back.
extern "C" UINT WINAPI Install(MSIHANDLE hInstall) {
    using namespace kzp;
    return GuardCallback(
        L"Install", L"installer/Install", __LINE__, UINT{ERROR_SUCCESS}, [hInstall]() -> UINT {
            std::wstring infPath;
            if (!ReadInfPath(hInstall, infPath))
                return ERROR_UNKNOWN_PROPERTY;
            AddPorts();
            InstallPrinter(infPath);
            SpoolerService stopped = StopSpooler();
            SetDirectPrinting();
            StartSpoolerAndWait(hInstall, std::move(stopped));
            // A form that stands already stays as it is.
            AddCustomForm(kPrinterName, kCustomFormName, kFormWidthTenthMm, kFormHeightTenthMm);
            SeedUserSettings();
            AddPortMonitor(hInstall);
            ReassignPrinterPort(hInstall);
            return ERROR_SUCCESS;
        });
}
