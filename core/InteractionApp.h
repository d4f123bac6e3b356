// Whether the companion application takes part in printing on this machine, and whether it is running or on
// screen.
#pragma once

#include <windows.h>

namespace kzp {

// The companion application that asks for file names; a separate program.
inline constexpr wchar_t kInteractionAppName[] = L"KzpWriterInteraction.exe";

// True on Windows 6.0 and later when the printer's queue is spooled, that is, not printing directly. A queue
// whose attributes cannot be read, for instance because the user renamed it, counts as not spooled.
bool UsesInteractionApp();

// Id of the first process, this one excepted, whose executable file has this name in any case; 0 when there
// is none or when the processes cannot be listed.
DWORD FindOtherProcessByName(const wchar_t* name);

// First visible top-level window of a process; 0 means this process. Null when it shows none.
HWND FindVisibleWindowOfProcess(DWORD pid);

}  // namespace kzp
