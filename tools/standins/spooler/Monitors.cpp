// Port monitors: a name and the DLL that serves it.
#include <windows.h>
#include <winspool.h>

#include <initializer_list>

#include "support/UniqueHandle.h"
#include "tools/standins/common/Registry.h"
#include "tools/standins/spooler/Calls.h"
#include "tools/standins/spooler/Machine.h"
#include "tools/standins/spooler/Reply.h"

using namespace kzp::standins;
using namespace kzp::standins::spooler;

namespace {

std::wstring MonitorPath(const std::wstring& monitor) {
    return std::wstring(kMonitorsKey) + L"\\" + monitor;
}

std::vector<std::wstring> MonitorNames() {
    std::vector<std::wstring> names = SubkeyNames(OpenKey(HKEY_LOCAL_MACHINE, kMonitorsKey));
    std::erase_if(names, [](const std::wstring& name) { return SameName(name, kLocalPort); });
    names.insert(names.begin(), kLocalPort);
    return names;
}

// The file must load and have an entry by which a spooler starts a monitor.
void CheckMonitorDll(const wchar_t* file) {
    const kzp::UniqueModule dll(LoadLibraryW(file));
    Require(static_cast<bool>(dll), GetLastError());
    Require(GetProcAddress(dll.Get(), "InitializePrintMonitor2") ||
                GetProcAddress(dll.Get(), "InitializePrintMonitor"),
            ERROR_PROC_NOT_FOUND);
}

std::wstring Listed(std::initializer_list<const wchar_t*> texts) {
    std::wstring list;
    for (const wchar_t* const text : texts)
        list += (list.empty() ? L"" : L", ") + std::wstring(text ? text : L"");
    return list;
}

}  // namespace

namespace kzp::standins::spooler {

void RequireOwnEnvironment(const wchar_t* environment) {
    Require(IsEmpty(environment) || SameName(environment, kEnvironment), ERROR_INVALID_ENVIRONMENT);
}

bool MonitorExists(const std::wstring& name) {
    return Contains(MonitorNames(), name);
}

}  // namespace kzp::standins::spooler

extern "C" {

BOOL WINAPI AddMonitorW(LPWSTR, DWORD level, LPBYTE data) {
    MONITOR_INFO_2W monitor{};
    if (data && level == 2)
        monitor = *reinterpret_cast<const MONITOR_INFO_2W*>(data);
    const auto& [name, environment, dll] = monitor;
    return Succeeded(AnswerChange(L"AddMonitorW", Listed({name, environment, dll}).c_str(), [&] {
        RecordOf<MONITOR_INFO_2W>(data, level == 2);
        Require(!IsEmpty(monitor.pName) && !std::wcschr(monitor.pName, L'\\') && !IsEmpty(monitor.pDLLName),
                ERROR_INVALID_PARAMETER);
        RequireOwnEnvironment(monitor.pEnvironment);
        Require(!MonitorExists(monitor.pName), ERROR_PRINT_MONITOR_ALREADY_INSTALLED);
        CheckMonitorDll(monitor.pDLLName);
        const Key key = CreateKey(HKEY_LOCAL_MACHINE, MonitorPath(monitor.pName));
        Check(WriteText(key, L"Driver", monitor.pDLLName));
    }));
}

BOOL WINAPI DeleteMonitorW(LPWSTR, LPWSTR environment, LPWSTR monitor) {
    return Succeeded(AnswerChange(L"DeleteMonitorW", Listed({monitor, environment}).c_str(), [&] {
        Require(!IsEmpty(monitor), ERROR_INVALID_PARAMETER);
        RequireOwnEnvironment(environment);
        Require(MonitorExists(monitor), ERROR_UNKNOWN_PRINT_MONITOR);
        Require(!SameName(monitor, kLocalPort), ERROR_PRINT_MONITOR_IN_USE);  // all ports are its own
        DeleteKey(HKEY_LOCAL_MACHINE, MonitorPath(monitor));
    }));
}

BOOL WINAPI EnumMonitorsW(LPWSTR, DWORD level, LPBYTE buffer, DWORD bytes, LPDWORD needed, LPDWORD returned) {
    return Succeeded(Answer(L"EnumMonitorsW", [&] {
        Require(returned, ERROR_INVALID_PARAMETER);
        Require(level == 1, ERROR_INVALID_LEVEL);
        Reply<MONITOR_INFO_1W> names;
        for (const std::wstring& monitor : MonitorNames()) {
            names.Add({});
            names.Text(&MONITOR_INFO_1W::pName, monitor);
        }
        *returned = 0;
        *returned = names.HandOut(buffer, bytes, needed);
    }));
}

}  // extern "C"
