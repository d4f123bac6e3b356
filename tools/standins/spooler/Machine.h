// What stands on the machine. Names are without regard to case.
#pragma once

#include <string>
#include <vector>

namespace kzp::standins::spooler {

// The printer's key below HKEY_LOCAL_MACHINE.
std::wstring QueuePath(const std::wstring& printer);

// False for names that no printer can have, too.
bool QueueExists(const std::wstring& printer);

// A text of every printer: its driver or its port.
std::vector<std::wstring> QueueTexts(const wchar_t* value);

bool DriverExists(const std::wstring& name);
bool MonitorExists(const std::wstring& name);

// Whether all ports of a printer (names separated by commas) exist; a printer without a port cannot be.
bool PortsExist(const std::wstring& names);

// ERROR_INVALID_ENVIRONMENT unless the argument of a call that takes one is null, empty or the platform's
// own.
void RequireOwnEnvironment(const wchar_t* environment);

}  // namespace kzp::standins::spooler
