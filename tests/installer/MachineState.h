// What stands on the machine of all that the installer's actions touch.
#pragma once

#include <map>
#include <span>
#include <string>
#include <vector>

#include "tests/support/ScratchRegistry.h"

namespace kzp::test {

inline constexpr wchar_t kPrinterKey[] =
    L"SYSTEM\\CurrentControlSet\\Control\\Print\\Printers\\Brimlake KZP Writer";
inline constexpr wchar_t kMonitorKey[] =
    L"SYSTEM\\CurrentControlSet\\Control\\Print\\Monitors\\Brimlake KZP Writer Port";
inline constexpr wchar_t kDriverKey[] =
    L"SYSTEM\\CurrentControlSet\\Control\\Print\\Environments\\Windows x64\\Drivers\\Version-3\\"
    L"Brimlake KZP Writer";
inline constexpr wchar_t kPortsKey[] = L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Ports";

using Lines = std::vector<std::wstring>;

// Each registry value of the product that is there: a text with the bytes that it takes, or the numbers of a
// block. A machine without the product has none.
using Machine = std::map<std::wstring, std::wstring>;

struct Part {
    const wchar_t* name;
    HKEY root;
    const wchar_t *key, *value;
    const wchar_t* installed;  // what a whole installation leaves there
};
inline const Part kParts[] = {
    {L"main port", HKEY_LOCAL_MACHINE, kPortsKey, L"Brimlake KZP Writer Port", L"\"\" in 2"},
    {L"second port", HKEY_LOCAL_MACHINE, kPortsKey, L"KZP:", L"\"\" in 2"},
    {L"printer's port", HKEY_LOCAL_MACHINE, kPrinterKey, L"Port", L"\"Brimlake KZP Writer Port\" in 50"},
    {L"printer's driver", HKEY_LOCAL_MACHINE, kPrinterKey, L"Printer Driver",
     L"\"Brimlake KZP Writer\" in 40"},
    {L"printer's attributes", HKEY_LOCAL_MACHINE, kPrinterKey, L"Attributes", L" 66"},
    {L"driver", HKEY_LOCAL_MACHINE, kDriverKey, L"Driver", L"\"unidrv.dll\" in 22"},
    {L"form", HKEY_LOCAL_MACHINE, L"SYSTEM\\CurrentControlSet\\Control\\Print\\Forms", L"User Defined",
     L" 215900 279400 0 0 215900 279400 0 0"},
    {L"monitor", HKEY_LOCAL_MACHINE, kMonitorKey, L"Driver", L"\"KZPPortMonitor.dll\" in 38"},
    {L"directory", HKEY_CURRENT_USER, kSettingsKey, L"Publish Directory", L"\"\" in 0"},
    {L"ASCII", HKEY_CURRENT_USER, kSettingsKey, L"Enable ASCII", L" 0"},
};

inline std::wstring Shown(const RegistryValue& value) {
    if (value.type == REG_SZ)
        return L"\"" + value.Text() + L"\" in " + std::to_wstring(value.bytes.size());
    std::wstring numbers;
    const auto* const first = reinterpret_cast<const LONG*>(value.bytes.data());
    for (const LONG number : std::span(first, value.bytes.size() / sizeof *first))
        numbers += L" " + std::to_wstring(number);
    return numbers;
}

inline Machine DescribeMachine() {
    Machine machine;
    for (const Part& part : kParts) {
        if (const auto value = ReadValue(part.root, part.key, part.value))
            machine[part.name] = Shown(*value);
    }
    return machine;
}

// After a whole installation, but for the parts whose names begin so.
inline Machine InstalledMachine(const Lines& without = {}) {
    Machine machine;
    for (const Part& part : kParts)
        machine[part.name] = part.installed;
    for (const std::wstring& beginning : without)
        std::erase_if(machine, [&](const auto& part) { return part.first.starts_with(beginning); });
    return machine;
}

// What removing it leaves.
inline Machine MachineAfterRemoval() {
    return InstalledMachine({L"main", L"second", L"printer", L"driver", L"monitor"});
}

}  // namespace kzp::test
