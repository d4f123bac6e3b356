// What the plug-in does to the driver's own property tree when a document sheet opens.
#pragma once

#include "driverkit/printoem.h"

namespace kzp {

// True for the items that the plug-in's pages replace, or that make no sense for a drawing file: orientation,
// colour, copies, N-up, page order, and the driver's private two-state switches.
bool IsReplacedItem(const OPTITEM& item);

// Hides the replaced items, and gives help to the one second-level item that carries the resource module's
// name for it. What is attached comes from the driver's heap. Without items, or without that text, nothing is
// touched.
void TrimDriverTree(const OEMCUIPPARAM& param);

}  // namespace kzp
