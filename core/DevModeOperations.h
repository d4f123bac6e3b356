// IPrintOemUI2::DevMode: the gate that refuses while the companion application is busy, and the record work.
#pragma once

#include "driverkit/printoem.h"

namespace kzp {

// Sizes, defaults, converts or merges the private record (`dwMode` is an OEMDM_* value; any other does
// nothing and answers S_OK). E_FAIL without a parameter block, and for every mode while the companion
// application is at work.
HRESULT DevMode(DWORD dwMode, POEMDMPARAM pOemDMParam);

}  // namespace kzp
