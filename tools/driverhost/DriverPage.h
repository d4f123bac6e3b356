// The driver's own page: its visible items as a tree, and the events that the plug-in's callback hears.
#pragma once

#include <windows.h>

#include <prsht.h>

namespace driverhost {

class HostSheet;

// The page of the driver's features, and one more page ("Layout") for drivers that show two.
PROPSHEETPAGEW DriverPage(HostSheet& sheet);
PROPSHEETPAGEW ExtraPage(HostSheet& sheet);

}  // namespace driverhost
