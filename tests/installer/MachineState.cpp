#include "tests/installer/MachineState.h"

#include <cstring>

#include "tests/support/ScratchRegistry.h"

namespace kzp::test {

namespace {

// A text with the bytes that it takes, a number, or all numbers of a block.
std::wstring Shown(const RegistryValue& value) {
    if (value.type == REG_SZ)
        return L"\"" + value.Text() + L"\" in " + std::to_wstring(value.bytes.size());
    std::wstring numbers = value.type == REG_DWORD ? L"" : L"block";
    for (size_t at = 0; at + sizeof(LONG) <= value.bytes.size(); at += sizeof(LONG)) {
        LONG number = 0;
        std::memcpy(&number, value.bytes.data() + at, sizeof number);
        numbers += L" " + std::to_wstring(number);
    }
    return numbers;
}

}  // namespace

Machine DescribeMachine() {
    const struct {
        const wchar_t* what;
        HKEY root;
        const wchar_t *key, *value;
    } places[] = {
        {L"main port", HKEY_LOCAL_MACHINE, kPortsKey, L"Brimlake KZP Writer Port"},
        {L"second port", HKEY_LOCAL_MACHINE, kPortsKey, L"KZP:"},
        {L"printer's port", HKEY_LOCAL_MACHINE, kPrinterKey, L"Port"},
        {L"printer's driver", HKEY_LOCAL_MACHINE, kPrinterKey, L"Printer Driver"},
        {L"printer's attributes", HKEY_LOCAL_MACHINE, kPrinterKey, L"Attributes"},
        {L"published", HKEY_LOCAL_MACHINE, kDirectoryKey, L"printSpooling"},
        {L"driver", HKEY_LOCAL_MACHINE, kDriverKey, L"Driver"},
        {L"form", HKEY_LOCAL_MACHINE, L"SYSTEM\\CurrentControlSet\\Control\\Print\\Forms", L"User Defined"},
        {L"monitor", HKEY_LOCAL_MACHINE, kMonitorKey, L"Driver"},
        {L"directory", HKEY_CURRENT_USER, kSettingsKey, L"Publish Directory"},
        {L"ASCII", HKEY_CURRENT_USER, kSettingsKey, L"Enable ASCII"},
    };
    Machine machine;
    for (const auto& [what, root, key, name] : places) {
        if (const auto value = ReadValue(root, key, name))
            machine[what] = Shown(*value);
    }
    return machine;
}

Machine InstalledMachine(const Lines& without) {
    Machine machine = {{L"main port", L"\"\" in 2"},
                       {L"second port", L"\"\" in 2"},
                       {L"printer's port", L"\"Brimlake KZP Writer Port\" in 50"},
                       {L"printer's driver", L"\"Brimlake KZP Writer\" in 40"},
                       {L"printer's attributes", L" 66"},
                       {L"driver", L"\"unidrv.dll\" in 22"},
                       {L"form", L"block 215900 279400 0 0 215900 279400 0 0"},
                       {L"monitor", L"\"KZPPortMonitor.dll\" in 38"},
                       {L"directory", L"\"\" in 0"},
                       {L"ASCII", L" 0"}};
    for (const std::wstring& part : without)
        std::erase_if(machine, [&](const auto& line) { return line.first.starts_with(part); });
    return machine;
}

Machine MachineAfterRemoval() {
    return InstalledMachine({L"main", L"second", L"printer", L"driver", L"monitor"});
}

}  // namespace kzp::test
