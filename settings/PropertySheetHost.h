// The driver's property sheet as the plug-in takes part in it: trimming the driver's property tree, and
// adding the plug-in's own pages.
#pragma once

#include "driverkit/printoem.h"
#include "settings/CKZPWriterSettings.h"

namespace kzp {

// `mode` is OEMCUIP_DOCPROP or OEMCUIP_PRNPROP; any other, or a missing parameter block, answers E_FAIL with
// last error ERROR_INVALID_PARAMETER. The driver calls it twice, the first time without the plug-in's item
// array.
HRESULT CommonUIProp(DWORD mode, POEMCUIPPARAM param);

// Answers every PROPSHEETUI_REASON_*; the outcome travels in `info->Result`. E_FAIL with last error
// ERROR_INVALID_PARAMETER without `info` or for another version of it.
HRESULT DocumentPropertySheets(PPROPSHEETUI_INFO info, LPARAM lParam, const CKZPWriterSettings& settings);

}  // namespace kzp
