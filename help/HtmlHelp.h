// The HTML Help control, reached the way its published link library reaches it: at the first call.
#pragma once

#include <windows.h>

namespace kzp {

inline constexpr UINT HH_DISPLAY_TOPIC = 0x0000;

// Calls the control's entry in the "hhctrl.ocx" that the machine registered, or in one found by name. Null
// when there is none; the failure is remembered, and later calls answer null at once. A control that was
// called stays loaded.
HWND HtmlHelpW(HWND caller, const wchar_t* file, UINT command, DWORD_PTR data);

}  // namespace kzp
