// The "Output Location" page: where the files go.
#pragma once

#include <windows.h>

namespace kzp {

// Dialog procedure of IDD_OUTPUT_LOCATION.
INT_PTR CALLBACK OutputLocationPageProc(HWND page, UINT message, WPARAM wParam, LPARAM lParam);

}  // namespace kzp
