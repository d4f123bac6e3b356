// What stands on the machine of all that the installer's actions touch.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace kzp::test {

inline constexpr wchar_t kPrinterKey[] =
    L"SYSTEM\\CurrentControlSet\\Control\\Print\\Printers\\Brimlake KZP Writer";
inline constexpr wchar_t kDirectoryKey[] =
    L"SYSTEM\\CurrentControlSet\\Control\\Print\\Printers\\Brimlake KZP Writer\\DsSpooler";
inline constexpr wchar_t kMonitorKey[] =
    L"SYSTEM\\CurrentControlSet\\Control\\Print\\Monitors\\Brimlake KZP Writer Port";
inline constexpr wchar_t kDriverKey[] =
    L"SYSTEM\\CurrentControlSet\\Control\\Print\\Environments\\Windows x64\\Drivers\\Version-3\\"
    L"Brimlake KZP Writer";
inline constexpr wchar_t kPortsKey[] = L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Ports";

using Lines = std::vector<std::wstring>;

// Each registry value of the product that is there; a machine without the product has none.
using Machine = std::map<std::wstring, std::wstring>;
Machine DescribeMachine();

// What a whole installation leaves in the spooler and the user's settings, but for the parts of these names.
Machine InstalledMachine(const Lines& without = {});

// What removing it leaves.
Machine MachineAfterRemoval();

}  // namespace kzp::test
