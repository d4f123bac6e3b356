// Records each command line, then does through the spooler what the platform's own entry would do for /if,
// /dl and /dd, without a window: a driver is recorded with the core driver's files, whatever else its INF
// file says.
#include <windows.h>
#include <winspool.h>

#include <map>
#include <new>
#include <string>

#include "support/UniqueHandle.h"
#include "tools/standins/common/Journal.h"
#include "tools/standins/printui/PrintUIRecords.h"
#include "tools/standins/spooler/Places.h"

namespace {

using Switches = std::map<std::wstring, std::wstring>;  // "/r" and the like, each with its argument or none

// The next word of the line from `at` on; quotation marks enclose blanks and are not part of it.
std::wstring NextWord(const std::wstring& line, size_t& at) {
    at = line.find_first_not_of(L' ', at);
    if (at == std::wstring::npos)
        return {};
    const bool quoted = line[at] == L'"';
    const size_t start = quoted ? at + 1 : at;
    const size_t end = std::min(line.find(quoted ? L'"' : L' ', start), line.size());
    at = end == line.size() ? std::wstring::npos : end + 1;
    return line.substr(start, end - start);
}

Switches Parse(const std::wstring& line) {
    Switches switches;
    std::wstring last;
    for (size_t at = 0; at != std::wstring::npos;) {
        const std::wstring word = NextWord(line, at);
        if (!word.empty() && word.front() == L'/')
            switches.emplace(last = word, std::wstring());
        else if (!word.empty())
            switches[last] = word;
    }
    return switches;
}

bool IsFile(const std::wstring& path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && !(attributes & FILE_ATTRIBUTE_DIRECTORY);
}

// Structures of the spooler take texts that it does not change as changeable ones.
wchar_t* Text(const wchar_t* text) {
    return const_cast<wchar_t*>(text);
}

DWORD InstallFromInf(Switches& switches) {
    if (!IsFile(switches[L"/f"]))
        return ERROR_FILE_NOT_FOUND;
    DRIVER_INFO_3W driver{};
    driver.cVersion = 3;
    driver.pName = switches[L"/m"].data();
    driver.pEnvironment = Text(L"Windows x64");
    driver.pDriverPath = Text(L"unidrv.dll");
    driver.pDataFile = Text(L"kzpwriter.gpd");
    driver.pConfigFile = Text(L"unidrvui.dll");
    driver.pHelpFile = Text(L"unidrv.hlp");
    if (!AddPrinterDriverW(nullptr, 3, reinterpret_cast<BYTE*>(&driver)))
        return GetLastError();
    PRINTER_INFO_2W printer{};
    printer.pPrinterName = switches[L"/b"].data();
    printer.pPortName = switches[L"/r"].data();
    printer.pDriverName = driver.pName;
    printer.pPrintProcessor = Text(L"winprint");
    printer.pDatatype = Text(L"RAW");
    printer.Attributes = PRINTER_ATTRIBUTE_LOCAL;
    const kzp::UniquePrinter added(AddPrinterW(nullptr, 2, reinterpret_cast<BYTE*>(&printer)));
    return added ? ERROR_SUCCESS : GetLastError();
}

DWORD DeleteLocalPrinter(Switches& switches) {
    PRINTER_DEFAULTSW defaults{nullptr, nullptr, PRINTER_ALL_ACCESS};
    kzp::UniquePrinter printer;
    if (!OpenPrinterW(switches[L"/n"].data(), printer.Put(), &defaults))
        return GetLastError();
    return DeletePrinter(printer.Get()) ? ERROR_SUCCESS : GetLastError();
}

DWORD Perform(Switches switches) {
    if (switches.contains(L"/if"))
        return InstallFromInf(switches);
    if (switches.contains(L"/dl"))
        return DeleteLocalPrinter(switches);
    if (switches.contains(L"/dd"))
        return DeletePrinterDriverW(nullptr, nullptr, switches[L"/m"].data()) ? ERROR_SUCCESS
                                                                              : GetLastError();
    return ERROR_SUCCESS;
}

}  // namespace

// Not in the platform's headers: programs look it up by name.
extern "C" DWORD WINAPI PrintUIEntryW(HWND, HINSTANCE, LPCWSTR command, int) {
    using namespace kzp::standins;
    try {
        const std::wstring line = command ? command : L"";
        Journal(HKEY_CURRENT_USER, printui::kCommandsKey).Append(line);
        if (const Journal calls(HKEY_LOCAL_MACHINE, spooler::kLogKey); calls.IsOpen())
            calls.Append(L"PrintUIEntryW " + line);
        return Perform(Parse(line));
    } catch (const std::bad_alloc&) {
        return ERROR_NOT_ENOUGH_MEMORY;
    }
}
