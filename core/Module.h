// What the loaded DLL keeps for the whole process.
#pragma once

#include <windows.h>

#include <atomic>

#include "driverkit/prcomoem.h"

namespace kzp {

// This DLL's own module handle, set when the process attaches; never freed.
extern HINSTANCE g_hInstance;

// Outstanding IClassFactory::LockServer(TRUE) calls; changed by interlocked operations only, and the one
// thing that DllCanUnloadNow looks at.
extern std::atomic<LONG> g_cServerLocks;

// Module-wide copy of the driver's helper interface for the dialogs and pages, filled by the latest
// PublishDriverInterface. Null until then. Its references are deliberately never released, so that every
// interface that ever stood here stays good.
extern std::atomic<IPrintOemDriverUI*> g_pOemDriverUI;

}  // namespace kzp
