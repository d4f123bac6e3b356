// Printer data: named values below the printer's key. These calls answer Win32 codes and set no last error.
#include <windows.h>
#include <winspool.h>

#include <algorithm>
#include <cstring>

#include "tools/standins/common/Registry.h"
#include "tools/standins/spooler/Calls.h"
#include "tools/standins/spooler/Handles.h"
#include "tools/standins/spooler/Places.h"
#include "tools/standins/spooler/Queues.h"

using namespace kzp::standins;
using namespace kzp::standins::spooler;

namespace {

DWORD FindDataKey(HANDLE handle, bool administer, const wchar_t* keyName, std::wstring& path) {
    std::wstring printer;
    if (const DWORD error = FindPrinter(handle, administer, printer))
        return error;
    if (IsEmpty(keyName))
        return ERROR_INVALID_PARAMETER;
    path = QueuePath(printer) + L"\\" + keyName;
    return ERROR_SUCCESS;
}

DWORD HandOutValue(const Value& value, DWORD* type, BYTE* data, DWORD bytes, DWORD* needed) {
    if (type)
        *type = value.type;
    *needed = static_cast<DWORD>(value.bytes.size());
    if (bytes < value.bytes.size())
        return ERROR_MORE_DATA;
    std::ranges::copy(value.bytes, data);
    return ERROR_SUCCESS;
}

DWORD Get(HANDLE handle, const wchar_t* keyName, const wchar_t* name, DWORD* type, BYTE* data, DWORD bytes,
          DWORD* needed) {
    std::wstring path;
    if (const DWORD error = FindDataKey(handle, false, keyName, path))
        return error;
    if (!name || !needed || (!data && bytes))
        return ERROR_INVALID_PARAMETER;
    const auto value = ReadValue(OpenKey(HKEY_LOCAL_MACHINE, path), name);
    return value ? HandOutValue(*value, type, data, bytes, needed) : ERROR_FILE_NOT_FOUND;
}

DWORD Set(HANDLE handle, const wchar_t* keyName, const wchar_t* name, DWORD type, const BYTE* data,
          DWORD bytes) {
    std::wstring path;
    if (const DWORD error = FindDataKey(handle, true, keyName, path))
        return error;
    if (!name || (!data && bytes))
        return ERROR_INVALID_PARAMETER;
    return static_cast<DWORD>(WriteValue(CreateKey(HKEY_LOCAL_MACHINE, path), name, type, data, bytes));
}

DWORD Delete(HANDLE handle, const wchar_t* keyName, const wchar_t* name) {
    std::wstring path;
    if (const DWORD error = FindDataKey(handle, true, keyName, path))
        return error;
    if (!name)
        return ERROR_INVALID_PARAMETER;
    return static_cast<DWORD>(DeleteValue(OpenKey(HKEY_LOCAL_MACHINE, path, KEY_WRITE), name));
}

DWORD Enumerate(HANDLE handle, DWORD index, wchar_t* name, DWORD nameBytes, DWORD* nameNeeded, DWORD* type,
                BYTE* data, DWORD bytes, DWORD* needed) {
    std::wstring path;
    if (const DWORD error = FindDataKey(handle, false, kPrinterDataKey, path))
        return error;
    if (!nameNeeded || (!name && nameBytes) || (!data && bytes))
        return ERROR_INVALID_PARAMETER;
    const Key key = OpenKey(HKEY_LOCAL_MACHINE, path);
    const std::vector<std::wstring> names = ValueNames(key);
    if (nameBytes == 0 && bytes == 0) {
        // The question for the largest sizes that occur.
        *nameNeeded = 0;
        DWORD largest = 0;
        for (const std::wstring& each : names) {
            *nameNeeded = std::max(*nameNeeded, static_cast<DWORD>((each.size() + 1) * sizeof(wchar_t)));
            if (const auto value = ReadValue(key, each))
                largest = std::max(largest, static_cast<DWORD>(value->bytes.size()));
        }
        if (needed)
            *needed = largest;
        return ERROR_SUCCESS;
    }
    const auto value = index < names.size() ? ReadValue(key, names[index]) : std::nullopt;
    if (!value)
        return ERROR_NO_MORE_ITEMS;
    *nameNeeded = static_cast<DWORD>((names[index].size() + 1) * sizeof(wchar_t));
    if (nameBytes < *nameNeeded)
        return ERROR_MORE_DATA;
    std::memcpy(name, names[index].c_str(), *nameNeeded);
    DWORD size = 0;
    const DWORD result = data ? HandOutValue(*value, type, data, bytes, &size) : DWORD{ERROR_SUCCESS};
    if (needed)
        *needed = static_cast<DWORD>(value->bytes.size());
    return result;
}

}  // namespace

extern "C" {

DWORD WINAPI GetPrinterDataW(HANDLE printer, LPWSTR name, LPDWORD type, LPBYTE data, DWORD bytes,
                             LPDWORD needed) {
    return Answer(L"GetPrinterDataW",
                  [&] { return Get(printer, kPrinterDataKey, name, type, data, bytes, needed); });
}

DWORD WINAPI GetPrinterDataExW(HANDLE printer, LPCWSTR key, LPCWSTR name, LPDWORD type, LPBYTE data,
                               DWORD bytes, LPDWORD needed) {
    return Answer(L"GetPrinterDataExW", [&] { return Get(printer, key, name, type, data, bytes, needed); });
}

DWORD WINAPI SetPrinterDataW(HANDLE printer, LPWSTR name, DWORD type, LPBYTE data, DWORD bytes) {
    return AnswerChange(L"SetPrinterDataW", name,
                        [&] { return Set(printer, kPrinterDataKey, name, type, data, bytes); });
}

DWORD WINAPI SetPrinterDataExW(HANDLE printer, LPCWSTR key, LPCWSTR name, DWORD type, LPBYTE data,
                               DWORD bytes) {
    return AnswerChange(L"SetPrinterDataExW", name,
                        [&] { return Set(printer, key, name, type, data, bytes); });
}

DWORD WINAPI DeletePrinterDataW(HANDLE printer, LPWSTR name) {
    return AnswerChange(L"DeletePrinterDataW", name, [&] { return Delete(printer, kPrinterDataKey, name); });
}

DWORD WINAPI DeletePrinterDataExW(HANDLE printer, LPCWSTR key, LPCWSTR name) {
    return AnswerChange(L"DeletePrinterDataExW", name, [&] { return Delete(printer, key, name); });
}

DWORD WINAPI EnumPrinterDataW(HANDLE printer, DWORD index, LPWSTR name, DWORD nameBytes, LPDWORD nameNeeded,
                              LPDWORD type, LPBYTE data, DWORD bytes, LPDWORD needed) {
    return Answer(L"EnumPrinterDataW", [&] {
        return Enumerate(printer, index, name, nameBytes, nameNeeded, type, data, bytes, needed);
    });
}

}  // extern "C"
