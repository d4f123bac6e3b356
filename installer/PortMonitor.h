// The port monitor that takes the printed data: added to the spooler, looked for, removed.
#pragma once

#include <windows.h>

#include <msi.h>

#include <string_view>

namespace kzp {

// Adds the monitor with its DLL and logs that; a failure is shown, then logged, and stops nothing.
void AddPortMonitor(MSIHANDLE hInstall);

// Restarts the spooler, which lets go of the monitor's DLL, and removes the monitor. A failure is logged.
void RemovePortMonitor(MSIHANDLE hInstall);

// Whether a monitor of exactly this name is installed; case counts.
bool IsMonitorInstalled(std::wstring_view name);

}  // namespace kzp
