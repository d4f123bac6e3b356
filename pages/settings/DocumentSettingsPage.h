// The "KZP Settings" page: paper, units, margins, quality, colour, output type.
#pragma once

#include <windows.h>

namespace kzp {

// Dialog procedure of IDD_DOCUMENT_SETTINGS.
INT_PTR CALLBACK DocumentSettingsPageProc(HWND page, UINT message, WPARAM wParam, LPARAM lParam);

}  // namespace kzp
