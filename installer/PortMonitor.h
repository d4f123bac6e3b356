// The port monitor that takes the printed data: added to the spooler, looked for, removed.
#pragma once

#include <windows.h>

#include <msi.h>

#include <string_view>

namespace kzp {

// Adds the monitor with a DLL for an environment, empty for the current one; false, with the last error set,
// when the spooler refuses.
bool AddMonitorFor(PCWSTR environment, PCWSTR dll);

// Adds the monitor with its own DLL and logs that; a failure is shown, then logged, and stops nothing.
void AddPortMonitor(MSIHANDLE hInstall);

// Restarts the spooler, which lets go of the monitor's DLL, and removes the monitor. A failure is logged.
void RemovePortMonitor(MSIHANDLE hInstall);

// Whether a monitor of exactly this name is installed; case counts.
bool IsMonitorInstalled(std::wstring_view name);

}  // namespace kzp
