#include "installer/PortMonitor.h"

#include <algorithm>
#include <memory>

#include "installer/InstallNames.h"
#include "installer/InstallerLog.h"
#include "installer/SpoolerService.h"
#include "resources/resource.h"
#include "support/Spooler.h"

namespace kzp {

namespace {

constexpr InstallFailure kMonitorFailed = {IDS_MONITOR_FAILED, L"Failed to create new monitor"};

}  // namespace

bool AddMonitorFor(PCWSTR environment, PCWSTR dll) {
    MONITOR_INFO_2W monitor = {SpoolerText(kMonitorName), SpoolerText(environment), SpoolerText(dll)};
    return AddMonitorW(nullptr, 2, reinterpret_cast<BYTE*>(&monitor)) != FALSE;
}

void AddPortMonitor(MSIHANDLE hInstall) {
    if (AddMonitorFor(kMonitorEnvironment, kMonitorDll)) {
        LogInstallMessage(hInstall, L"INFO: Sucessfully created Port Monitor in function AddMonitor.\n");
        return;
    }
    const DWORD error = GetLastError();
    ShowInstallFailure(kMonitorFailed);
    LogInstallError(
        hInstall, L"ERROR: Failed to create monitor in function AddMonitor. The Error code is: [1]\n", error);
}

void RemovePortMonitor(MSIHANDLE hInstall) {
    RestartSpooler(hInstall);
    if (!DeleteMonitorW(nullptr, SpoolerText(kMonitorEnvironment), SpoolerText(kMonitorName)))
        LogInstallError(
            hInstall,
            L"ERROR: Failed to delete new monitor in function DeleteMonitor. The Error code is: [1]\n",
            GetLastError());
}

bool IsMonitorInstalled(std::wstring_view name) {
    DWORD bytes = 0;
    DWORD count = 0;
    EnumMonitorsW(nullptr, 1, nullptr, 0, &bytes, &count);
    const auto buffer = std::make_unique<BYTE[]>(bytes);
    if (!EnumMonitorsW(nullptr, 1, buffer.get(), bytes, &bytes, &count))
        return false;
    const auto* const monitors = reinterpret_cast<const MONITOR_INFO_1W*>(buffer.get());
    return std::any_of(monitors, monitors + count, [name](const MONITOR_INFO_1W& monitor) {
        return monitor.pName && name == monitor.pName;
    });
}

}  // namespace kzp
