// What the Help buttons do.
#pragma once

namespace kzp {

// Opens the installed help file at the product's topic. Silent when there is no help file or no help control:
// the address then lacks its path, or nothing opens.
void ShowHelp();

}  // namespace kzp
