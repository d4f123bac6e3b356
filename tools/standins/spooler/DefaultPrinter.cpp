// The user's default printer.
#include <windows.h>
#include <winspool.h>

#include <cstring>

#include "tools/standins/common/Registry.h"
#include "tools/standins/spooler/Calls.h"
#include "tools/standins/spooler/Places.h"
#include "tools/standins/spooler/Queues.h"

using namespace kzp::standins;
using namespace kzp::standins::spooler;

namespace {

// The stored choice as long as that printer exists; else the first printer there is; else nothing.
std::wstring DefaultPrinter() {
    const std::wstring device = ReadText(OpenKey(HKEY_CURRENT_USER, kDefaultPrinterKey), L"Device");
    std::wstring chosen = device.substr(0, device.find(L','));
    if (QueueExists(chosen))
        return chosen;
    const std::vector<std::wstring> names = QueueNames();
    return names.empty() ? std::wstring() : names.front();
}

}  // namespace

extern "C" {

BOOL WINAPI GetDefaultPrinterW(LPWSTR buffer, LPDWORD characters) {
    return Succeeded(Answer(L"GetDefaultPrinterW", [&]() -> DWORD {
        if (!characters)
            return ERROR_INVALID_PARAMETER;
        const std::wstring printer = DefaultPrinter();
        if (printer.empty())
            return ERROR_FILE_NOT_FOUND;
        const DWORD room = *characters;
        *characters = static_cast<DWORD>(printer.size() + 1);
        if (!buffer || room < *characters)
            return ERROR_INSUFFICIENT_BUFFER;
        std::memcpy(buffer, printer.c_str(), *characters * sizeof(wchar_t));
        return ERROR_SUCCESS;
    }));
}

// Without a name: the first printer, unless there is a default printer already.
BOOL WINAPI SetDefaultPrinterW(LPCWSTR name) {
    return Succeeded(AnswerChange(L"SetDefaultPrinterW", name, [&]() -> DWORD {
        const auto queue = LoadQueue(IsEmpty(name) ? DefaultPrinter() : name);
        if (!queue)
            return ERROR_INVALID_PRINTER_NAME;
        return static_cast<DWORD>(WriteText(CreateKey(HKEY_CURRENT_USER, kDefaultPrinterKey), L"Device",
                                            queue->name + L",winspool," + queue->port));
    }));
}

}  // extern "C"
