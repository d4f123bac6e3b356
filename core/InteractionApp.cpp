#include "core/InteractionApp.h"

#include <tlhelp32.h>

#include "support/Names.h"
#include "support/RegistryKey.h"
#include "support/WindowsVersion.h"

namespace kzp {

namespace {

// The queue's name is fixed here; a renamed queue is deliberately not found.
constexpr wchar_t kQueueKey[] =
    L"SYSTEM\\CurrentControlSet\\Control\\Print\\Printers\\Brimlake KZP Writer for 2D";
constexpr wchar_t kQueueAttributes[] = L"Attributes";

bool QueueIsSpooled() {
    const RegistryKey key = RegistryKey::Open(HKEY_LOCAL_MACHINE, kQueueKey, KEY_READ);
    DWORD attributes = 0;
    DWORD bytes = sizeof attributes;
    return key.Query(kQueueAttributes, &attributes, &bytes) == ERROR_SUCCESS &&
           !(attributes & PRINTER_ATTRIBUTE_DIRECT);
}

struct WindowSearch {
    DWORD pid;
    HWND found;
};

BOOL CALLBACK StopAtVisibleWindow(HWND window, LPARAM parameter) {
    auto* const search = reinterpret_cast<WindowSearch*>(parameter);
    if (!(GetWindowLongPtrW(window, GWL_STYLE) & WS_VISIBLE))
        return TRUE;
    DWORD owner = 0;
    GetWindowThreadProcessId(window, &owner);
    if (owner != search->pid)
        return TRUE;
    search->found = window;
    return FALSE;
}

}  // namespace

bool UsesInteractionApp() {
    return WindowsVersion().dwMajorVersion >= 6 && QueueIsSpooled();
}

DWORD FindOtherProcessByName(const wchar_t* name) {
    const UniqueFile snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    if (!snapshot)
        return 0;
    const DWORD self = GetCurrentProcessId();
    PROCESSENTRY32W process = {};
    process.dwSize = sizeof process;
    for (BOOL more = Process32FirstW(snapshot.Get(), &process); more;
         more = Process32NextW(snapshot.Get(), &process)) {
        if (process.th32ProcessID != self && CompareNames(process.szExeFile, name) == 0)
            return process.th32ProcessID;
    }
    return 0;
}

HWND FindVisibleWindowOfProcess(DWORD pid) {
    WindowSearch search = {pid != 0 ? pid : GetCurrentProcessId(), nullptr};
    EnumWindows(StopAtVisibleWindow, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

}  // namespace kzp
