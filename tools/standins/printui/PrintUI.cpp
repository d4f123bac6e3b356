// Notes each command line in the spooler's log, then does through the spooler what the platform's own entry
// would do for /if, /dl and /dd, without a window: a driver is recorded with the core driver's files,
// whatever else its INF file says.
#include <windows.h>

#include <shellapi.h>

#include <map>
#include <new>
#include <string>

#include "support/Spooler.h"
#include "tools/standins/common/Journal.h"
#include "tools/standins/spooler/Places.h"

namespace {

using kzp::SpoolerText;
using Switches = std::map<std::wstring, std::wstring>;  // "/r" and the like, each with its argument or none

Switches Parse(const std::wstring& line) {
    int count = 0;
    wchar_t** const words = CommandLineToArgvW((L"printui " + line).c_str(), &count);
    Switches switches;
    const wchar_t* last = L"";
    for (int at = 1; at < count; ++at) {
        if (*words[at] == L'/')
            switches.emplace(last = words[at], L"");
        else
            switches[last] = words[at];
    }
    LocalFree(words);
    return switches;
}

DWORD InstallFromInf(Switches& switches) {
    const DWORD attributes = GetFileAttributesW(switches[L"/f"].c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_DIRECTORY))
        return ERROR_FILE_NOT_FOUND;
    DRIVER_INFO_3W driver{};
    driver.cVersion = 3;
    driver.pName = switches[L"/m"].data();
    driver.pEnvironment = SpoolerText(L"Windows x64");
    driver.pDriverPath = SpoolerText(L"unidrv.dll");
    driver.pDataFile = SpoolerText(L"kzpwriter.gpd");
    driver.pConfigFile = SpoolerText(L"unidrvui.dll");
    driver.pHelpFile = SpoolerText(L"unidrv.hlp");
    if (!AddPrinterDriverW(nullptr, 3, reinterpret_cast<BYTE*>(&driver)))
        return GetLastError();
    PRINTER_INFO_2W printer{};
    printer.pPrinterName = switches[L"/b"].data();
    printer.pPortName = switches[L"/r"].data();
    printer.pDriverName = driver.pName;
    printer.pPrintProcessor = SpoolerText(L"winprint");
    printer.pDatatype = SpoolerText(L"RAW");
    printer.Attributes = PRINTER_ATTRIBUTE_LOCAL;
    const kzp::UniquePrinter added(AddPrinterW(nullptr, 2, reinterpret_cast<BYTE*>(&printer)));
    return added ? ERROR_SUCCESS : GetLastError();
}

DWORD Perform(Switches switches) {
    if (switches.contains(L"/if"))
        return InstallFromInf(switches);
    BOOL done = TRUE;
    if (switches.contains(L"/dl")) {
        const kzp::UniquePrinter printer = kzp::OpenPrinterWithAllAccess(switches[L"/n"].c_str());
        done = printer && DeletePrinter(printer.Get());
    } else if (switches.contains(L"/dd")) {
        done = DeletePrinterDriverW(nullptr, nullptr, switches[L"/m"].data());
    }
    return done ? ERROR_SUCCESS : GetLastError();
}

}  // namespace

// Not in the platform's headers: programs look it up by name.
extern "C" DWORD WINAPI PrintUIEntryW(HWND, HINSTANCE, LPCWSTR command, int) {
    using namespace kzp::standins;
    try {
        const std::wstring line = command ? command : L"";
        Journal(HKEY_LOCAL_MACHINE, spooler::kLogKey).Append(L"PrintUIEntryW " + line);
        return Perform(Parse(line));
    } catch (const std::bad_alloc&) {
        return ERROR_NOT_ENOUGH_MEMORY;
    }
}
