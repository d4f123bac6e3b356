// The printer for a machine on which nobody installed it.
#pragma once

#include <string>

namespace driverhost {

// Adds driver and printer through the spooler; a printer that exists already is left as it is. Says what was
// done; HostError when the spooler refuses.
void CreatePrinter(const std::wstring& name);

}  // namespace driverhost
