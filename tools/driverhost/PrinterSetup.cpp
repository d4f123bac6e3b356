#include "tools/driverhost/PrinterSetup.h"

#include <windows.h>
#include <winspool.h>

#include "support/UniqueHandle.h"
#include "tools/driverhost/Text.h"

namespace driverhost {

namespace {

bool PrinterExists(const std::wstring& name) {
    HANDLE printer = nullptr;
    const bool exists = OpenPrinterW(const_cast<PWSTR>(name.c_str()), &printer, nullptr) != FALSE;
    const kzp::UniquePrinter owner(printer);
    return exists;
}

// The files of the driver whose user interface the host stands for; the spooler records their names.
void AddDriver() {
    wchar_t driverName[] = L"Brimlake KZP Writer";
    wchar_t environment[] = L"Windows x64";
    wchar_t driverPath[] = L"UNIDRV.DLL";
    wchar_t dataFile[] = L"KZPWriter.GPD";
    wchar_t configFile[] = L"UNIDRVUI.DLL";
    wchar_t helpFile[] = L"UNIDRV.HLP";
    wchar_t dependent[] = L"KZPWriterUI.dll\0KZPWriterRes.dll\0";
    wchar_t dataType[] = L"RAW";
    DRIVER_INFO_3W driver = {};
    driver.cVersion = 3;
    driver.pName = driverName;
    driver.pEnvironment = environment;
    driver.pDriverPath = driverPath;
    driver.pDataFile = dataFile;
    driver.pConfigFile = configFile;
    driver.pHelpFile = helpFile;
    driver.pDependentFiles = dependent;
    driver.pDefaultDataType = dataType;
    if (!AddPrinterDriverW(nullptr, 3, reinterpret_cast<BYTE*>(&driver)) &&
        GetLastError() != ERROR_PRINTER_DRIVER_ALREADY_INSTALLED)
        throw HostError{
            Format(L"the printer driver cannot be added: %ls", Win32Error(GetLastError()).c_str())};
}

}  // namespace

void CreatePrinter(const std::wstring& name) {
    if (PrinterExists(name)) {
        Say(L"printer \"" + name + L"\" exists");
        return;
    }
    AddDriver();
    wchar_t port[] = L"FILE:";
    wchar_t driverName[] = L"Brimlake KZP Writer";
    wchar_t processor[] = L"winprint";
    wchar_t dataType[] = L"RAW";
    PRINTER_INFO_2W info = {};
    info.pPrinterName = const_cast<PWSTR>(name.c_str());
    info.pPortName = port;
    info.pDriverName = driverName;
    info.pPrintProcessor = processor;
    info.pDatatype = dataType;
    info.Attributes = PRINTER_ATTRIBUTE_LOCAL;
    const kzp::UniquePrinter printer(AddPrinterW(nullptr, 2, reinterpret_cast<BYTE*>(&info)));
    if (!printer)
        throw HostError{Format(L"the printer cannot be added: %ls", Win32Error(GetLastError()).c_str())};
    Say(L"printer \"" + name + L"\" created");
}

}  // namespace driverhost
