// The operating system in the nine classes that the fonts dialog's embedding asks for.
#pragma once

#include <windows.h>

namespace kzp {

// Windows 6.0, whose browser runs in a restricted process that gets a notice instead of the dialog.
inline constexpr int kOsClassNt60 = 8;

// `version` is GetVersion()'s answer: its top bit tells a system that is not NT, its low byte the major
// version. `record` is GetVersionExW's.
//
// Versions above 6.0 deliberately share class 1 with every NT version that has no class of its own.
constexpr int ClassifyOs(DWORD version, const OSVERSIONINFOW& record) {
    const bool isNt = (version & 0x80000000) == 0;
    const DWORD major = record.dwMajorVersion;
    const DWORD minor = record.dwMinorVersion;
    if (isNt) {
        if (major == 4)
            return 5;
        if (major == 5 && minor <= 1)
            return minor == 0 ? 6 : 7;
        return major == 6 && minor == 0 ? kOsClassNt60 : 1;
    }
    if ((version & 0xFF) < 4)
        return 0;
    if (major == 4 && minor == 10)
        return 3;
    return major == 4 && minor == 90 ? 4 : 2;
}

}  // namespace kzp
