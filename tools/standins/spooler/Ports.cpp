// Ports of the local machine. All belong to the monitor that is always there.
#include <windows.h>
#include <winspool.h>

#include <algorithm>

#include "tools/standins/common/Registry.h"
#include "tools/standins/spooler/Calls.h"
#include "tools/standins/spooler/Machine.h"

using namespace kzp::standins;
using namespace kzp::standins::spooler;

namespace {

std::vector<std::wstring> PortNames() {
    return ValueNames(OpenKey(HKEY_LOCAL_MACHINE, kPortsKey));
}

// A printer that prints to several ports names them with commas between.
std::vector<std::wstring> Split(const std::wstring& names) {
    std::vector<std::wstring> ports;
    for (size_t start = 0; start <= names.size(); start += ports.back().size() + 1)
        ports.push_back(names.substr(start, names.find(L',', start) - start));
    return ports;
}

}  // namespace

namespace kzp::standins::spooler {

bool PortsExist(const std::wstring& names) {
    return std::ranges::all_of(
        Split(names), [known = PortNames()](const std::wstring& port) { return Contains(known, port); });
}

}  // namespace kzp::standins::spooler

extern "C" {

// Not in the platform's headers: programs look it up by name.
BOOL WINAPI AddPortExW(LPWSTR, DWORD level, LPBYTE data, LPWSTR monitor) {
    const wchar_t* const port = TextIn(data, level == 1, &PORT_INFO_1W::pName);
    return Succeeded(AnswerChange(L"AddPortExW", port, [&] {
        RecordOf<PORT_INFO_1W>(data, level == 1);
        Require(!IsEmpty(monitor), ERROR_INVALID_PARAMETER);
        Require(MonitorExists(monitor), ERROR_UNKNOWN_PRINT_MONITOR);
        // The other monitors offer no ports of their own here.
        Require(SameName(monitor, kLocalPort), ERROR_NOT_SUPPORTED);
        // The local port monitor answers so for a port that exists, too.
        Require(!IsEmpty(port) && !Contains(PortNames(), port), ERROR_INVALID_PARAMETER);
        Check(WriteText(CreateKey(HKEY_LOCAL_MACHINE, kPortsKey), port, L""));
    }));
}

BOOL WINAPI DeletePortW(LPWSTR, HWND, LPWSTR port) {
    return Succeeded(AnswerChange(L"DeletePortW", port, [&] {
        Require(!IsEmpty(port) && Contains(PortNames(), port), ERROR_UNKNOWN_PORT);
        for (const std::wstring& used : QueueTexts(L"Port"))
            Require(!Contains(Split(used), port), ERROR_BUSY);
        Check(DeleteValue(OpenKey(HKEY_LOCAL_MACHINE, kPortsKey, KEY_WRITE), port));
    }));
}

}  // extern "C"
