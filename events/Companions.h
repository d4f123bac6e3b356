// The separate programs that take part in printing, and where this machine keeps them. Every failure in here
// is silent: a companion that cannot be found or started never holds up a document.
#pragma once

#include <windows.h>

namespace kzp {

// Opens the finished file in the viewer; a separate program, beside the interaction application.
inline constexpr wchar_t kViewerLauncherName[] = L"KZPAppLauncher.exe";

// The maker's viewer, a product with a folder of its own.
inline constexpr wchar_t kViewerName[] = L"PlansightApp.exe";

// Starts `exeName` from the folder of the help file, without arguments and without taking the focus, unless
// another process of that name runs. True only when it was started. At most 24 characters of the name count.
// Two documents that start at the same moment may each start one: nothing is locked. For a program that is
// not there the shell shows its own message.
bool LaunchCompanion(const wchar_t* exeName);

// True when the viewer is installed. `pathOut` is null or has room for MAX_PATH characters, and then receives
// the viewer's full path.
bool FindViewer(wchar_t* pathOut);

// Writes the name of a running process's executable file, without its folder, to `nameOut`, which has room
// for MAX_PATH characters. False for process id 0, and for a process that is gone, may not be opened, or is
// not among the first 1024.
bool GetProcessBaseName(DWORD pid, wchar_t* nameOut);

}  // namespace kzp
