// The driver's property sheet as the plug-in takes part in it: trimming the driver's property tree, and
// adding the plug-in's own pages.
#pragma once

#include "driverkit/prcomoem.h"
#include "settings/CKZPWriterSettings.h"

namespace kzp {

// Makes sure that the printer has the form "User Defined". For a document's sheet (`mode` OEMCUIP_DOCPROP)
// also trims the driver's tree and registers the commit; `param` and all that it points to are then used by
// the pages and must live until PROPSHEETUI_REASON_DESTROY or the end of their windows. For the printer's
// properties (OEMCUIP_PRNPROP) nothing outlives the call. Any other mode, or a missing block, answers E_FAIL
// with last error ERROR_INVALID_PARAMETER.
//
// The driver calls it twice for one sheet, the first time without item arrays, to learn how many items the
// plug-in adds: none. `driverUI` is the helper interface that the called object was given, or null; it must
// stay good for as long as the DLL is loaded.
HRESULT CommonUIProp(DWORD mode, POEMCUIPPARAM param, IPrintOemDriverUI* driverUI);

// Answers every PROPSHEETUI_REASON_*; the outcome travels in `info->Result`. E_FAIL with last error
// ERROR_INVALID_PARAMETER without `info` or for another version of it.
HRESULT DocumentPropertySheets(PPROPSHEETUI_INFO info, LPARAM lParam, const CKZPWriterSettings& settings);

}  // namespace kzp
