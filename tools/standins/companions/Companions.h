// How tests place companions, start them, wait for them and end them.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "support/UniqueHandle.h"
#include "tools/standins/companions/CompanionNames.h"

namespace kzp::standins {

// Copies the companion, which stands beside this program, into `folder` under `name` (with ".exe") and tells
// it what to do when it is started without arguments (kShowsWindow ...). Answers its path, empty on failure.
std::wstring PlaceCompanion(const std::wstring& folder, const std::wstring& name, const wchar_t* does);

// Starts a placed companion; with `does` it follows that instead. Empty when it could not be started.
UniqueKernelHandle StartCompanion(const std::wstring& path, const wchar_t* does = nullptr);

// Whether a companion of that file name, whoever started it, does what it was told within the time.
bool WaitReady(const std::wstring& name, DWORD milliseconds = 10000);

// The command lines with which the companion at `path` was started so far, by whomever.
std::vector<std::wstring> Starts(const std::wstring& path);

// Ends all companions and waits for their end; false when some are still there after the time.
bool QuitAll(DWORD milliseconds = 10000);

}  // namespace kzp::standins
