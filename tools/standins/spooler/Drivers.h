// Printer drivers, which printers name.
#pragma once

#include <string>

namespace kzp::standins::spooler {

bool DriverExists(const std::wstring& name);

}  // namespace kzp::standins::spooler
