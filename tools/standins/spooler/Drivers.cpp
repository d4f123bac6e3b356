// Printer drivers. Only their records are kept; the files they name are somebody else's business.
#include "tools/standins/spooler/Drivers.h"

#include <windows.h>
#include <winspool.h>

#include <algorithm>

#include "tools/standins/common/Registry.h"
#include "tools/standins/spooler/Calls.h"
#include "tools/standins/spooler/Handles.h"
#include "tools/standins/spooler/Places.h"
#include "tools/standins/spooler/Ports.h"
#include "tools/standins/spooler/Queues.h"
#include "tools/standins/spooler/Reply.h"

using namespace kzp::standins;
using namespace kzp::standins::spooler;

namespace {

std::wstring DriverPath(const std::wstring& driver) {
    return std::wstring(kDriversKey) + L"\\" + driver;
}

std::wstring DriverDirectory() {
    wchar_t system[MAX_PATH];
    const UINT length = GetSystemDirectoryW(system, MAX_PATH);
    return std::wstring(system, length < MAX_PATH ? length : 0) + L"\\spool\\drivers\\x64";
}

// Drivers name their files with or without a folder; the spooler serves them from its own.
std::wstring FileName(const wchar_t* path) {
    const std::wstring text = path ? path : L"";
    return text.substr(text.find_last_of(L'\\') + 1);
}

std::wstring ServedPath(const Key& driver, const wchar_t* value) {
    const std::wstring file = ReadText(driver, value);
    return file.empty() ? file : DriverDirectory() + L"\\3\\" + file;
}

DWORD Store(const DRIVER_INFO_2W& info, const Key& key) {
    WriteText(key, L"Driver", FileName(info.pDriverPath));
    WriteText(key, L"Data File", FileName(info.pDataFile));
    return static_cast<DWORD>(WriteText(key, L"Configuration File", FileName(info.pConfigFile)));
}

// Adding a driver that exists replaces its record.
DWORD Add(DWORD level, const BYTE* data) {
    if (level != 2 && level != 3)
        return ERROR_INVALID_LEVEL;
    if (!data)
        return ERROR_INVALID_PARAMETER;
    const auto& info = *reinterpret_cast<const DRIVER_INFO_2W*>(data);  // level 3 begins alike
    if (IsEmpty(info.pName) || std::wcschr(info.pName, L'\\') || IsEmpty(info.pDriverPath) ||
        IsEmpty(info.pDataFile) || IsEmpty(info.pConfigFile))
        return ERROR_INVALID_PARAMETER;
    if (!IsOwnEnvironment(info.pEnvironment))
        return ERROR_INVALID_ENVIRONMENT;
    return Store(info, CreateKey(HKEY_LOCAL_MACHINE, DriverPath(info.pName)));
}

bool IsDriverInUse(const std::wstring& driver) {
    const std::vector<std::wstring> queues = QueueNames();
    return std::any_of(queues.begin(), queues.end(), [&](const std::wstring& name) {
        const auto queue = LoadQueue(name);
        return queue && SameName(queue->driver, driver);
    });
}

DWORD Delete(const wchar_t* environment, const wchar_t* driver) {
    if (IsEmpty(driver))
        return ERROR_INVALID_PARAMETER;
    if (!IsOwnEnvironment(environment))
        return ERROR_INVALID_ENVIRONMENT;
    if (!DriverExists(driver))
        return ERROR_UNKNOWN_PRINTER_DRIVER;
    if (IsDriverInUse(driver))
        return ERROR_PRINTER_DRIVER_IN_USE;
    DeleteKey(HKEY_LOCAL_MACHINE, DriverPath(driver));
    return ERROR_SUCCESS;
}

DWORD HandOut(const std::wstring& driver, BYTE* buffer, DWORD bytes, DWORD* needed) {
    const Key key = OpenKey(HKEY_LOCAL_MACHINE, DriverPath(driver));
    Reply<DRIVER_INFO_2W> reply;
    reply.Add({3, nullptr, nullptr, nullptr, nullptr, nullptr});
    reply.Text(&DRIVER_INFO_2W::pName, driver);
    reply.Text(&DRIVER_INFO_2W::pEnvironment, kEnvironment);
    reply.Text(&DRIVER_INFO_2W::pDriverPath, ServedPath(key, L"Driver"));
    reply.Text(&DRIVER_INFO_2W::pDataFile, ServedPath(key, L"Data File"));
    reply.Text(&DRIVER_INFO_2W::pConfigFile, ServedPath(key, L"Configuration File"));
    return reply.HandOut(buffer, bytes, needed);
}

}  // namespace

namespace kzp::standins::spooler {

bool DriverExists(const std::wstring& name) {
    return !name.empty() && name.find(L'\\') == std::wstring::npos &&
           OpenKey(HKEY_LOCAL_MACHINE, DriverPath(name));
}

}  // namespace kzp::standins::spooler

extern "C" {

BOOL WINAPI AddPrinterDriverExW(LPWSTR, DWORD level, LPBYTE data, DWORD) {
    const bool named = data && (level == 2 || level == 3);
    return Succeeded(AnswerChange(L"AddPrinterDriverExW",
                                  named ? reinterpret_cast<const DRIVER_INFO_2W*>(data)->pName : nullptr,
                                  [&] { return Add(level, data); }));
}

BOOL WINAPI AddPrinterDriverW(LPWSTR server, DWORD level, LPBYTE data) {
    return AddPrinterDriverExW(server, level, data, APD_COPY_NEW_FILES);
}

BOOL WINAPI DeletePrinterDriverW(LPWSTR, LPWSTR environment, LPWSTR driver) {
    return Succeeded(
        AnswerChange(L"DeletePrinterDriverW", driver, [&] { return Delete(environment, driver); }));
}

BOOL WINAPI GetPrinterDriverW(HANDLE handle, LPWSTR environment, DWORD level, LPBYTE buffer, DWORD bytes,
                              LPDWORD needed) {
    return Succeeded(Answer(L"GetPrinterDriverW", [&]() -> DWORD {
        std::wstring printer;
        if (const DWORD error = FindPrinter(handle, false, printer))
            return error;
        if (!IsOwnEnvironment(environment))
            return ERROR_INVALID_ENVIRONMENT;
        const auto queue = LoadQueue(printer);
        if (!queue || !DriverExists(queue->driver))
            return ERROR_UNKNOWN_PRINTER_DRIVER;
        return level == 2 ? HandOut(queue->driver, buffer, bytes, needed) : DWORD{ERROR_INVALID_LEVEL};
    }));
}

}  // extern "C"
