// The Windows that the plug-in runs on.
#pragma once

#include <windows.h>

namespace kzp {

// All zeros when Windows does not tell.
inline OSVERSIONINFOW WindowsVersion() {
    OSVERSIONINFOW version = {};
    version.dwOSVersionInfoSize = sizeof version;
    return GetVersionExW(&version) ? version : OSVERSIONINFOW{};
}

}  // namespace kzp
