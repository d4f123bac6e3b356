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

template <class Info>
DWORD Store(const Info& info, const Key& key) {
    WriteDword(key, L"Version", 3);
    WriteText(key, L"Driver", FileName(info.pDriverPath));
    WriteText(key, L"Data File", FileName(info.pDataFile));
    return static_cast<DWORD>(WriteText(key, L"Configuration File", FileName(info.pConfigFile)));
}

DWORD StoreExtras(const DRIVER_INFO_3W& info, const Key& key) {
    WriteText(key, L"Help File", FileName(info.pHelpFile));
    WriteText(key, L"Monitor", info.pMonitorName ? info.pMonitorName : L"");
    WriteText(key, L"Datatype", info.pDefaultDataType ? info.pDefaultDataType : L"");
    std::wstring dependent;
    for (const wchar_t* file = info.pDependentFiles; !IsEmpty(file); file += std::wcslen(file) + 1)
        dependent += FileName(file) + L'\0';
    dependent += L'\0';
    return static_cast<DWORD>(WriteValue(key, L"Dependent Files", REG_MULTI_SZ, dependent.c_str(),
                                         dependent.size() * sizeof(wchar_t)));
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
    const Key key = CreateKey(HKEY_LOCAL_MACHINE, DriverPath(info.pName));
    const DWORD error = Store(info, key);
    if (error != ERROR_SUCCESS || level == 2)
        return error;
    return StoreExtras(*reinterpret_cast<const DRIVER_INFO_3W*>(data), key);
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

// The part that levels 2 and 3 have in common.
template <class Info>
void DescribeFiles(Reply<Info>& reply, const std::wstring& driver, const Key& key) {
    Info info{};
    info.cVersion = ReadDword(key, L"Version", 3);
    reply.Add(info);
    reply.Text(&Info::pName, driver);
    reply.Text(&Info::pEnvironment, kEnvironment);
    reply.Text(&Info::pDriverPath, ServedPath(key, L"Driver"));
    reply.Text(&Info::pDataFile, ServedPath(key, L"Data File"));
    reply.Text(&Info::pConfigFile, ServedPath(key, L"Configuration File"));
}

void Describe(Reply<DRIVER_INFO_1W>& reply, const std::wstring& driver, const Key&) {
    reply.Add({});
    reply.Text(&DRIVER_INFO_1W::pName, driver);
}

void Describe(Reply<DRIVER_INFO_2W>& reply, const std::wstring& driver, const Key& key) {
    DescribeFiles(reply, driver, key);
}

void Describe(Reply<DRIVER_INFO_3W>& reply, const std::wstring& driver, const Key& key) {
    DescribeFiles(reply, driver, key);
    std::wstring dependent;
    for (const std::wstring& file : ReadTexts(key, L"Dependent Files"))
        dependent += DriverDirectory() + L"\\3\\" + file + L'\0';
    reply.Text(&DRIVER_INFO_3W::pHelpFile, ServedPath(key, L"Help File"));
    reply.Text(&DRIVER_INFO_3W::pDependentFiles, dependent);
    reply.Text(&DRIVER_INFO_3W::pMonitorName, ReadText(key, L"Monitor"));
    reply.Text(&DRIVER_INFO_3W::pDefaultDataType, ReadText(key, L"Datatype"));
}

template <class Info>
DWORD HandOutDrivers(const std::vector<std::wstring>& drivers, BYTE* buffer, DWORD bytes, DWORD* needed,
                     DWORD* returned) {
    Reply<Info> reply;
    for (const std::wstring& driver : drivers)
        Describe(reply, driver, OpenKey(HKEY_LOCAL_MACHINE, DriverPath(driver)));
    return reply.HandOut(buffer, bytes, needed, returned);
}

DWORD HandOutLevel(DWORD level, const std::vector<std::wstring>& drivers, BYTE* buffer, DWORD bytes,
                   DWORD* needed, DWORD* returned) {
    switch (level) {
        case 1:
            return HandOutDrivers<DRIVER_INFO_1W>(drivers, buffer, bytes, needed, returned);
        case 2:
            return HandOutDrivers<DRIVER_INFO_2W>(drivers, buffer, bytes, needed, returned);
        case 3:
            return HandOutDrivers<DRIVER_INFO_3W>(drivers, buffer, bytes, needed, returned);
        default:
            return ERROR_INVALID_LEVEL;
    }
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
        return HandOutLevel(level, {queue->driver}, buffer, bytes, needed, nullptr);
    }));
}

BOOL WINAPI EnumPrinterDriversW(LPWSTR, LPWSTR environment, DWORD level, LPBYTE buffer, DWORD bytes,
                                LPDWORD needed, LPDWORD returned) {
    return Succeeded(Answer(L"EnumPrinterDriversW", [&]() -> DWORD {
        if (!returned)
            return ERROR_INVALID_PARAMETER;
        if (!IsOwnEnvironment(environment) && !SameName(environment, L"all"))
            return ERROR_INVALID_ENVIRONMENT;
        return HandOutLevel(level, SubkeyNames(OpenKey(HKEY_LOCAL_MACHINE, kDriversKey)), buffer, bytes,
                            needed, returned);
    }));
}

BOOL WINAPI GetPrinterDriverDirectoryW(LPWSTR, LPWSTR environment, DWORD level, LPBYTE buffer, DWORD bytes,
                                       LPDWORD needed) {
    return Succeeded(Answer(L"GetPrinterDriverDirectoryW", [&]() -> DWORD {
        if (level != 1)
            return ERROR_INVALID_LEVEL;
        if (!IsOwnEnvironment(environment))
            return ERROR_INVALID_ENVIRONMENT;
        if (!needed)
            return ERROR_INVALID_PARAMETER;
        const std::wstring directory = DriverDirectory();
        *needed = static_cast<DWORD>((directory.size() + 1) * sizeof(wchar_t));
        if (!buffer || bytes < *needed)
            return ERROR_INSUFFICIENT_BUFFER;
        std::memcpy(buffer, directory.c_str(), *needed);
        return ERROR_SUCCESS;
    }));
}

}  // extern "C"
