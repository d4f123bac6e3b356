// Printer data: named values below the printer's key. These calls answer Win32 codes and set no last error.
#include <windows.h>
#include <winspool.h>

#include <algorithm>

#include "tools/standins/common/Registry.h"
#include "tools/standins/spooler/Calls.h"
#include "tools/standins/spooler/Handles.h"
#include "tools/standins/spooler/Machine.h"

using namespace kzp::standins;
using namespace kzp::standins::spooler;

namespace {

std::wstring DataPath(const std::wstring& printer) {
    return QueuePath(printer) + L"\\PrinterDriverData";
}

}  // namespace

extern "C" {

DWORD WINAPI GetPrinterDataW(HANDLE handle, LPWSTR name, LPDWORD type, LPBYTE data, DWORD bytes,
                             LPDWORD needed) {
    return Answer(L"GetPrinterDataW", [&] {
        const std::wstring path = DataPath(FindPrinter(handle));
        Require(name && needed && (data || bytes == 0), ERROR_INVALID_PARAMETER);
        const auto value = ReadValue(OpenKey(HKEY_LOCAL_MACHINE, path), name);
        Require(value.has_value(), ERROR_FILE_NOT_FOUND);
        if (type)
            *type = value->type;
        *needed = static_cast<DWORD>(value->bytes.size());
        Require(bytes >= value->bytes.size(), ERROR_MORE_DATA);
        std::ranges::copy(value->bytes, data);
    });
}

DWORD WINAPI SetPrinterDataW(HANDLE handle, LPWSTR name, DWORD type, LPBYTE data, DWORD bytes) {
    return AnswerChange(L"SetPrinterDataW", name, [&] {
        const std::wstring path = DataPath(FindPrinter(handle, true));
        Require(name && (data || bytes == 0), ERROR_INVALID_PARAMETER);
        Check(WriteValue(CreateKey(HKEY_LOCAL_MACHINE, path), name, type, data, bytes));
    });
}

}  // extern "C"
