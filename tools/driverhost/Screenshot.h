// Pictures of what is on the screen, as PNG files.
#pragma once

#include <windows.h>

#include <string>

namespace driverhost {

// The window with its frame, as the screen shows it. HostError when the file cannot be written.
void SaveScreenshot(HWND window, const std::wstring& path);

}  // namespace driverhost
