// Port monitors: a name and the DLL that serves it.
#include <windows.h>
#include <winspool.h>

#include <algorithm>
#include <initializer_list>

#include "support/UniqueHandle.h"
#include "tools/standins/common/Registry.h"
#include "tools/standins/spooler/Calls.h"
#include "tools/standins/spooler/Places.h"
#include "tools/standins/spooler/Ports.h"
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

// Whether the file can be loaded and has an entry by which a spooler starts a monitor.
DWORD CheckMonitorDll(const wchar_t* file) {
    const kzp::UniqueModule dll(LoadLibraryW(file));
    if (!dll)
        return GetLastError();
    for (const char* const entry : {"InitializePrintMonitor2", "InitializePrintMonitor"}) {
        if (GetProcAddress(dll.Get(), entry))
            return ERROR_SUCCESS;
    }
    return ERROR_PROC_NOT_FOUND;
}

std::wstring Listed(std::initializer_list<const wchar_t*> texts) {
    std::wstring list;
    for (const wchar_t* const text : texts)
        list += (list.empty() ? L"" : L", ") + std::wstring(text ? text : L"");
    return list;
}

DWORD Add(DWORD level, const BYTE* data) {
    if (level != 2)
        return ERROR_INVALID_LEVEL;
    if (!data)
        return ERROR_INVALID_PARAMETER;
    const auto& monitor = *reinterpret_cast<const MONITOR_INFO_2W*>(data);
    if (IsEmpty(monitor.pName) || std::wcschr(monitor.pName, L'\\') || IsEmpty(monitor.pDLLName))
        return ERROR_INVALID_PARAMETER;
    if (!IsOwnEnvironment(monitor.pEnvironment))
        return ERROR_INVALID_ENVIRONMENT;
    if (MonitorExists(monitor.pName))
        return ERROR_PRINT_MONITOR_ALREADY_INSTALLED;
    if (const DWORD error = CheckMonitorDll(monitor.pDLLName))
        return error;
    return static_cast<DWORD>(
        WriteText(CreateKey(HKEY_LOCAL_MACHINE, MonitorPath(monitor.pName)), L"Driver", monitor.pDLLName));
}

DWORD Delete(const wchar_t* environment, const wchar_t* monitor) {
    if (IsEmpty(monitor))
        return ERROR_INVALID_PARAMETER;
    if (!IsOwnEnvironment(environment))
        return ERROR_INVALID_ENVIRONMENT;
    if (!MonitorExists(monitor))
        return ERROR_UNKNOWN_PRINT_MONITOR;
    if (SameName(monitor, kLocalPort))
        return ERROR_PRINT_MONITOR_IN_USE;  // all ports are its own
    DeleteKey(HKEY_LOCAL_MACHINE, MonitorPath(monitor));
    return ERROR_SUCCESS;
}

}  // namespace

namespace kzp::standins::spooler {

bool IsOwnEnvironment(const wchar_t* environment) {
    return IsEmpty(environment) || SameName(environment, kEnvironment);
}

bool MonitorExists(const std::wstring& name) {
    const std::vector<std::wstring> names = MonitorNames();
    return std::any_of(names.begin(), names.end(),
                       [&](const std::wstring& each) { return SameName(each, name); });
}

}  // namespace kzp::standins::spooler

extern "C" {

BOOL WINAPI AddMonitorW(LPWSTR, DWORD level, LPBYTE data) {
    std::wstring monitor;
    if (data && level == 2) {
        const auto& info = *reinterpret_cast<const MONITOR_INFO_2W*>(data);
        monitor = Listed({info.pName, info.pEnvironment, info.pDLLName});
    }
    return Succeeded(AnswerChange(L"AddMonitorW", monitor.c_str(), [&] { return Add(level, data); }));
}

BOOL WINAPI DeleteMonitorW(LPWSTR, LPWSTR environment, LPWSTR monitor) {
    return Succeeded(AnswerChange(L"DeleteMonitorW", Listed({monitor, environment}).c_str(),
                                  [&] { return Delete(environment, monitor); }));
}

BOOL WINAPI EnumMonitorsW(LPWSTR, DWORD level, LPBYTE buffer, DWORD bytes, LPDWORD needed, LPDWORD returned) {
    return Succeeded(Answer(L"EnumMonitorsW", [&]() -> DWORD {
        if (!returned)
            return ERROR_INVALID_PARAMETER;
        if (level != 1)
            return ERROR_INVALID_LEVEL;
        Reply<MONITOR_INFO_1W> names;
        for (const std::wstring& monitor : MonitorNames()) {
            names.Add({});
            names.Text(&MONITOR_INFO_1W::pName, monitor);
        }
        return names.HandOut(buffer, bytes, needed, returned);
    }));
}

}  // extern "C"
