// How tests place companions, start them, wait for them and end them.
#pragma once

#include <windows.h>

#include <string>

#include "support/UniqueHandle.h"
#include "tools/standins/companions/CompanionNames.h"

namespace kzp::standins {

// Copies the companion, which stands beside this program, into `folder` under `name` (with ".exe") and tells
// it what to do (kShowsWindow ...). Answers its path, empty on failure.
std::wstring PlaceCompanion(const std::wstring& folder, const std::wstring& name, const wchar_t* does);

// Starts a placed companion. Empty when it could not be started.
UniqueKernelHandle StartCompanion(const std::wstring& path);

// Whether a companion of that file name, whoever started it, does what it was told within the time.
bool WaitReady(const std::wstring& name, DWORD milliseconds = 10000);

// Ends all companions and waits for their end; false when some are still there after the time.
bool QuitAll(DWORD milliseconds = 10000);

}  // namespace kzp::standins
