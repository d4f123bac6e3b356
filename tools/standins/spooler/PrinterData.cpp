// Printer data: named values below the printer's key. These calls answer Win32 codes and set no last error.
#include <windows.h>
#include <winspool.h>

#include <algorithm>

#include "tools/standins/common/Registry.h"
#include "tools/standins/spooler/Calls.h"
#include "tools/standins/spooler/Handles.h"
#include "tools/standins/spooler/Places.h"
#include "tools/standins/spooler/Queues.h"

using namespace kzp::standins;
using namespace kzp::standins::spooler;

namespace {

DWORD FindDataKey(HANDLE handle, bool administer, std::wstring& path) {
    std::wstring printer;
    if (const DWORD error = FindPrinter(handle, administer, printer))
        return error;
    path = QueuePath(printer) + L"\\" + kPrinterDataKey;
    return ERROR_SUCCESS;
}

DWORD Get(HANDLE handle, const wchar_t* name, DWORD* type, BYTE* data, DWORD bytes, DWORD* needed) {
    std::wstring path;
    if (const DWORD error = FindDataKey(handle, false, path))
        return error;
    if (!name || !needed || (!data && bytes))
        return ERROR_INVALID_PARAMETER;
    const auto value = ReadValue(OpenKey(HKEY_LOCAL_MACHINE, path), name);
    if (!value)
        return ERROR_FILE_NOT_FOUND;
    if (type)
        *type = value->type;
    *needed = static_cast<DWORD>(value->bytes.size());
    if (bytes < value->bytes.size())
        return ERROR_MORE_DATA;
    std::ranges::copy(value->bytes, data);
    return ERROR_SUCCESS;
}

DWORD Set(HANDLE handle, const wchar_t* name, DWORD type, const BYTE* data, DWORD bytes) {
    std::wstring path;
    if (const DWORD error = FindDataKey(handle, true, path))
        return error;
    if (!name || (!data && bytes))
        return ERROR_INVALID_PARAMETER;
    return static_cast<DWORD>(WriteValue(CreateKey(HKEY_LOCAL_MACHINE, path), name, type, data, bytes));
}

}  // namespace

extern "C" {

DWORD WINAPI GetPrinterDataW(HANDLE printer, LPWSTR name, LPDWORD type, LPBYTE data, DWORD bytes,
                             LPDWORD needed) {
    return Answer(L"GetPrinterDataW", [&] { return Get(printer, name, type, data, bytes, needed); });
}

DWORD WINAPI SetPrinterDataW(HANDLE printer, LPWSTR name, DWORD type, LPBYTE data, DWORD bytes) {
    return AnswerChange(L"SetPrinterDataW", name, [&] { return Set(printer, name, type, data, bytes); });
}

}  // extern "C"
