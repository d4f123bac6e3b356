// The print spooler as a service: stopped and started again, with the waits that this takes.
#pragma once

#include <windows.h>

#include <msi.h>

#include "support/UniqueHandle.h"

namespace kzp {

// The service manager and the spooler's service, which is closed first: both open, or neither.
struct SpoolerService {
    UniqueService manager;
    UniqueService service;
};

// Sends the spooler the stop control and waits 2000 ms, whatever it answered. The handles are for starting it
// again; they are empty, and nothing was stopped, when the service cannot be opened.
SpoolerService StopSpooler();

// Starts the spooler and looks up to five times, 1000 ms apart, whether it runs; logs that it does, that it
// does not, and each look that fails. Closes both handles. Does nothing without them.
//
// When no look succeeded at all, the action ends here with an access violation.
void StartSpoolerAndWait(MSIHANDLE hInstall, SpoolerService stopped);

// Both, one after the other: at most 6 seconds.
void RestartSpooler(MSIHANDLE hInstall);

}  // namespace kzp
