// What stands on the machine of all that the installer's actions touch.
#pragma once

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

using Lines = std::vector<std::wstring>;

inline Lines And(Lines first, const Lines& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

// One line for each port, printer, driver, form, monitor and registry value of the product; a machine without
// it gives none.
std::vector<std::wstring> DescribeMachine();

// What a whole installation leaves in the spooler and the user's settings.
std::vector<std::wstring> InstalledMachine();

// What removing it leaves.
std::vector<std::wstring> MachineAfterRemoval();

}  // namespace kzp::test
