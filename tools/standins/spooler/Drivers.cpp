// Printer drivers. Only their records are kept; the files they name are somebody else's business.
#include <windows.h>
#include <winspool.h>

#include "tools/standins/common/Registry.h"
#include "tools/standins/spooler/Calls.h"
#include "tools/standins/spooler/Handles.h"
#include "tools/standins/spooler/Machine.h"
#include "tools/standins/spooler/Reply.h"

using namespace kzp::standins;
using namespace kzp::standins::spooler;

namespace {

struct DriverFile {
    LPWSTR DRIVER_INFO_2W::* path;
    const wchar_t* value;
};
constexpr DriverFile kFiles[] = {{&DRIVER_INFO_2W::pDriverPath, L"Driver"},
                                 {&DRIVER_INFO_2W::pDataFile, L"Data File"},
                                 {&DRIVER_INFO_2W::pConfigFile, L"Configuration File"}};

std::wstring DriverPath(const std::wstring& driver) {
    return std::wstring(kDriversKey) + L"\\" + driver;
}

// Where the spooler keeps the files of drivers of version 3, with a closing backslash.
std::wstring DriverDirectory() {
    wchar_t system[MAX_PATH];
    const UINT length = GetSystemDirectoryW(system, MAX_PATH);
    return std::wstring(system, length < MAX_PATH ? length : 0) + L"\\spool\\drivers\\x64\\3\\";
}

}  // namespace

namespace kzp::standins::spooler {

bool DriverExists(const std::wstring& name) {
    return !name.empty() && name.find(L'\\') == std::wstring::npos &&
           OpenKey(HKEY_LOCAL_MACHINE, DriverPath(name));
}

}  // namespace kzp::standins::spooler

extern "C" {

// Adding a driver that exists replaces its record.
BOOL WINAPI AddPrinterDriverW(LPWSTR, DWORD level, LPBYTE data) {
    const bool known = level == 2 || level == 3;  // which begin alike
    const wchar_t* const name = TextIn(data, known, &DRIVER_INFO_2W::pName);
    return Succeeded(AnswerChange(L"AddPrinterDriverW", name, [&] {
        const auto& info = RecordOf<DRIVER_INFO_2W>(data, known);
        Require(!IsEmpty(name) && !std::wcschr(name, L'\\'), ERROR_INVALID_PARAMETER);
        for (const DriverFile& file : kFiles)
            Require(!IsEmpty(info.*file.path), ERROR_INVALID_PARAMETER);
        RequireOwnEnvironment(info.pEnvironment);
        // Drivers name their files with or without a folder; the spooler serves them from its own.
        const Key key = CreateKey(HKEY_LOCAL_MACHINE, DriverPath(name));
        for (const DriverFile& file : kFiles) {
            const std::wstring path = info.*file.path;
            Check(WriteText(key, file.value, path.substr(path.find_last_of(L'\\') + 1)));
        }
    }));
}

BOOL WINAPI DeletePrinterDriverW(LPWSTR, LPWSTR environment, LPWSTR driver) {
    return Succeeded(AnswerChange(L"DeletePrinterDriverW", driver, [&] {
        Require(!IsEmpty(driver), ERROR_INVALID_PARAMETER);
        RequireOwnEnvironment(environment);
        Require(DriverExists(driver), ERROR_UNKNOWN_PRINTER_DRIVER);
        Require(!Contains(QueueTexts(L"Printer Driver"), driver), ERROR_PRINTER_DRIVER_IN_USE);
        DeleteKey(HKEY_LOCAL_MACHINE, DriverPath(driver));
    }));
}

BOOL WINAPI GetPrinterDriverW(HANDLE handle, LPWSTR environment, DWORD level, LPBYTE buffer, DWORD bytes,
                              LPDWORD needed) {
    return Succeeded(Answer(L"GetPrinterDriverW", [&] {
        const std::wstring printer = FindPrinter(handle);
        RequireOwnEnvironment(environment);
        const std::wstring driver =
            ReadText(OpenKey(HKEY_LOCAL_MACHINE, QueuePath(printer)), L"Printer Driver");
        Require(DriverExists(driver), ERROR_UNKNOWN_PRINTER_DRIVER);
        Require(level == 2, ERROR_INVALID_LEVEL);
        const Key key = OpenKey(HKEY_LOCAL_MACHINE, DriverPath(driver));
        Reply<DRIVER_INFO_2W> reply;
        reply.Add({3, nullptr, nullptr, nullptr, nullptr, nullptr});
        reply.Text(&DRIVER_INFO_2W::pName, driver);
        reply.Text(&DRIVER_INFO_2W::pEnvironment, kEnvironment);
        for (const DriverFile& file : kFiles)
            reply.Text(file.path, DriverDirectory() + ReadText(key, file.value));
        reply.HandOut(buffer, bytes, needed);
    }));
}

}  // extern "C"
