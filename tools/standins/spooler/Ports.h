// Ports, which printers name, and the monitors to which they belong.
#pragma once

#include <string>

namespace kzp::standins::spooler {

// Whether all ports of a printer (names separated by commas) exist; a printer without a port cannot be.
bool PortsExist(const std::wstring& names);

bool MonitorExists(const std::wstring& name);

// The environment argument of the calls that take one: null, empty or this platform's own.
bool IsOwnEnvironment(const wchar_t* environment);

}  // namespace kzp::standins::spooler
