// The action "InstallMonitor": adds the port monitor alone, with a DLL that the package names.
#include <windows.h>

#include <msi.h>

#include <string>

#include "core/DebugTrace.h"
#include "installer/InstallNames.h"
#include "installer/InstallerLog.h"
#include "installer/PortMonitor.h"

// Answers ERROR_SUCCESS when the monitor was added and ERROR_INSTALL_FAILURE otherwise, also when it stood
// already. Nothing is shown or logged.
extern "C" UINT WINAPI InstallMonitor(MSIHANDLE hInstall) {
    using namespace kzp;
    // Deliberately in the delivered action: a debugger stops here. Without one the action ends here.
    __debugbreak();
    return GuardCallback(L"InstallMonitor", L"installer/InstallMonitor", __LINE__,
                         UINT{ERROR_INSTALL_FAILURE}, [hInstall]() -> UINT {
                             if (IsMonitorInstalled(kMonitorName))
                                 return ERROR_INSTALL_FAILURE;
                             const std::wstring dll = GetInstallerProperty(hInstall, kActionData);
                             if (dll.empty() || !AddMonitorFor(L"", dll.c_str()))
                                 return ERROR_INSTALL_FAILURE;
                             return ERROR_SUCCESS;
                         });
}
