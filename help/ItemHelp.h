// Help for an item of the driver's property tree: its file lies in the driver's own directory.
#pragma once

#include "driverkit/printoem.h"

namespace kzp {

// Gives `pOptItem` the help file named by text `stringId` of the resource module, in the directory of the
// printer's driver, and the index `helpIndex`. What is attached comes from `hHeap`, the driver's, which frees
// it. The file is null when its path cannot be built. FALSE, with the item's flags untouched, when the
// extension cannot be allocated or the resource module is missing.
BOOL SetItemHelp(HANDLE hPrinter, HANDLE hHeap, HMODULE hModule, POPTITEM pOptItem, DWORD helpIndex,
                 UINT stringId);

}  // namespace kzp
