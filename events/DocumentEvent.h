// What happens when an application prints.
#pragma once

#include <windows.h>

namespace kzp {

// Called by the driver in the printing process for every document event (`iEsc`, a DOCUMENTEVENT_* value).
// Always S_OK; the outcome is in `*piResult`, DOCUMENTEVENT_SUCCESS or DOCUMENTEVENT_UNSUPPORTED. Nothing
// that fails here stops a print job.
HRESULT DocumentEvent(HANDLE hPrinter, HDC hdc, INT iEsc, ULONG cbIn, PVOID pvIn, ULONG cbOut, PVOID pvOut,
                      PINT piResult);

}  // namespace kzp
