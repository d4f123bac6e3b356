// What stands on the machine of all that the installer's actions touch.
#pragma once

#include <string>
#include <vector>

namespace kzp::test {

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
