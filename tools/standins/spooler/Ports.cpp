// Ports of the local machine. All belong to the monitor that is always there.
#include "tools/standins/spooler/Ports.h"

#include <windows.h>
#include <winspool.h>

#include <algorithm>

#include "tools/standins/common/Registry.h"
#include "tools/standins/spooler/Calls.h"
#include "tools/standins/spooler/Places.h"
#include "tools/standins/spooler/Queues.h"

using namespace kzp::standins;
using namespace kzp::standins::spooler;

namespace {

std::vector<std::wstring> PortNames() {
    return ValueNames(OpenKey(HKEY_LOCAL_MACHINE, kPortsKey));
}

bool Contains(const std::vector<std::wstring>& names, const std::wstring& name) {
    return std::any_of(names.begin(), names.end(),
                       [&](const std::wstring& each) { return SameName(each, name); });
}

// A printer that prints to several ports names them with commas between.
std::vector<std::wstring> Split(const std::wstring& names) {
    std::vector<std::wstring> ports;
    for (size_t start = 0; start <= names.size();) {
        const size_t end = std::min(names.find(L',', start), names.size());
        ports.push_back(names.substr(start, end - start));
        start = end + 1;
    }
    return ports;
}

bool IsPortInUse(const std::wstring& port) {
    const std::vector<std::wstring> queues = QueueNames();
    return std::any_of(queues.begin(), queues.end(), [&](const std::wstring& name) {
        const auto queue = LoadQueue(name);
        return queue && Contains(Split(queue->port), port);
    });
}

DWORD Add(DWORD level, const BYTE* data, const wchar_t* monitor) {
    if (level != 1)
        return ERROR_INVALID_LEVEL;
    if (!data || IsEmpty(monitor))
        return ERROR_INVALID_PARAMETER;
    const wchar_t* const port = reinterpret_cast<const PORT_INFO_1W*>(data)->pName;
    if (!MonitorExists(monitor))
        return ERROR_UNKNOWN_PRINT_MONITOR;
    if (!SameName(monitor, kLocalPort))
        return ERROR_NOT_SUPPORTED;  // the other monitors offer no ports of their own here
    // The local port monitor answers so for a port that exists, too.
    if (IsEmpty(port) || Contains(PortNames(), port))
        return ERROR_INVALID_PARAMETER;
    return static_cast<DWORD>(WriteText(CreateKey(HKEY_LOCAL_MACHINE, kPortsKey), port, L""));
}

DWORD Delete(const wchar_t* port) {
    if (IsEmpty(port) || !Contains(PortNames(), port))
        return ERROR_UNKNOWN_PORT;
    if (IsPortInUse(port))
        return ERROR_BUSY;
    return static_cast<DWORD>(DeleteValue(OpenKey(HKEY_LOCAL_MACHINE, kPortsKey, KEY_WRITE), port));
}

}  // namespace

namespace kzp::standins::spooler {

bool PortsExist(const std::wstring& names) {
    const std::vector<std::wstring> known = PortNames();
    const std::vector<std::wstring> wanted = Split(names);
    return std::all_of(wanted.begin(), wanted.end(),
                       [&](const std::wstring& port) { return Contains(known, port); });
}

}  // namespace kzp::standins::spooler

extern "C" {

// Not in the platform's headers: programs look it up by name.
BOOL WINAPI AddPortExW(LPWSTR, DWORD level, LPBYTE data, LPWSTR monitor) {
    const bool named = data && level == 1;
    return Succeeded(AnswerChange(L"AddPortExW",
                                  named ? reinterpret_cast<const PORT_INFO_1W*>(data)->pName : nullptr,
                                  [&] { return Add(level, data, monitor); }));
}

BOOL WINAPI DeletePortW(LPWSTR, HWND, LPWSTR port) {
    return Succeeded(AnswerChange(L"DeletePortW", port, [&] { return Delete(port); }));
}

}  // extern "C"
