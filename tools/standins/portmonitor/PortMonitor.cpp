// The least port monitor that a spooler accepts: it has no ports and opens none.
#include <windows.h>
#include <winspool.h>

#include <winsplp.h>  // builds on the one before

namespace {

BOOL WINAPI EnumNoPorts(HANDLE, LPWSTR, DWORD, LPBYTE, DWORD, LPDWORD needed, LPDWORD returned) {
    *needed = 0;
    *returned = 0;
    return TRUE;
}

BOOL WINAPI OpenNoPort(HANDLE, LPWSTR, PHANDLE port) {
    *port = nullptr;
    SetLastError(ERROR_UNKNOWN_PORT);
    return FALSE;
}

void WINAPI Shutdown(HANDLE) {}

}  // namespace

extern "C" LPMONITOR2 WINAPI InitializePrintMonitor2(PMONITORINIT, PHANDLE monitor) {
    static MONITOR2 functions = [] {
        MONITOR2 filled{};
        filled.cbSize = sizeof filled;
        filled.pfnEnumPorts = EnumNoPorts;
        filled.pfnOpenPort = OpenNoPort;
        filled.pfnShutdown = Shutdown;
        return filled;
    }();
    *monitor = &functions;  // only told apart from null
    return &functions;
}
