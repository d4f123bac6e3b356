#include "tests/installer/MachineState.h"

#include <gtest/gtest.h>
#include <windows.h>
#include <winspool.h>

#include "support/UniqueHandle.h"
#include "tests/support/ScratchRegistry.h"

namespace kzp::test {

namespace {

constexpr wchar_t kPrinter[] = L"Brimlake KZP Writer";
constexpr wchar_t kPortsKey[] = L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Ports";
UniquePrinter Open(const wchar_t* name) {
    UniquePrinter printer;
    if (!OpenPrinterW(const_cast<wchar_t*>(name), printer.Put(), nullptr))
        (void)printer.Release();
    return printer;
}

std::wstring Hex(DWORD value) {
    wchar_t text[16] = {};
    swprintf(text, 16, L"%#lx", value);
    return text;
}

void AddPrinter(std::vector<std::wstring>& lines) {
    const UniquePrinter printer = Open(kPrinter);
    DWORD bytes = 0;
    GetPrinterW(printer.Get(), 2, nullptr, 0, &bytes);
    std::vector<BYTE> buffer(bytes);
    if (!printer || !GetPrinterW(printer.Get(), 2, buffer.data(), bytes, &bytes))
        return;
    const auto& info = *reinterpret_cast<const PRINTER_INFO_2W*>(buffer.data());
    lines.push_back(L"printer on " + std::wstring(info.pPortName) + L", driver " + info.pDriverName +
                    L", attributes " + Hex(info.Attributes));
}

void AddForm(std::vector<std::wstring>& lines) {
    const UniquePrinter server = Open(nullptr);
    wchar_t name[] = L"User Defined";
    BYTE buffer[512] = {};
    DWORD bytes = 0;
    if (!server || !GetFormW(server.Get(), name, 1, buffer, sizeof buffer, &bytes))
        return;
    const auto& form = *reinterpret_cast<const FORM_INFO_1W*>(buffer);
    lines.push_back(L"form User Defined " + std::to_wstring(form.Size.cx) + L" x " +
                    std::to_wstring(form.Size.cy) + L", printable to " +
                    std::to_wstring(form.ImageableArea.right) + L", " +
                    std::to_wstring(form.ImageableArea.bottom) + L", flags " + std::to_wstring(form.Flags));
}

void AddValue(std::vector<std::wstring>& lines, HKEY root, const wchar_t* key, const wchar_t* name) {
    const auto value = ReadValue(root, key, name);
    if (!value)
        return;
    const std::wstring content = value->type == REG_DWORD ? Hex(value->Dword()) : value->Text();
    lines.push_back(std::wstring(name) + L" = " + content + L" (type " + std::to_wstring(value->type) +
                    L", " + std::to_wstring(value->bytes.size()) + L" bytes)");
}

}  // namespace

std::vector<std::wstring> DescribeMachine() {
    std::vector<std::wstring> lines;
    for (const wchar_t* const port : {L"Brimlake KZP Writer Port", L"KZP:"}) {
        if (ReadValue(HKEY_LOCAL_MACHINE, kPortsKey, port))
            lines.push_back(L"port " + std::wstring(port));
    }
    AddPrinter(lines);
    AddValue(lines, HKEY_LOCAL_MACHINE, kDirectoryKey, L"printSpooling");
    if (KeyExists(HKEY_LOCAL_MACHINE, kDriverKey))
        lines.push_back(L"driver Brimlake KZP Writer");
    AddForm(lines);
    if (const auto dll = ReadValue(HKEY_LOCAL_MACHINE, kMonitorKey, L"Driver"))
        lines.push_back(L"monitor Brimlake KZP Writer Port, " + dll->Text());
    AddValue(lines, HKEY_CURRENT_USER, kSettingsKey, L"Publish Directory");
    AddValue(lines, HKEY_CURRENT_USER, kSettingsKey, L"Enable ASCII");
    return lines;
}

std::vector<std::wstring> InstalledMachine() {
    return {
        L"port Brimlake KZP Writer Port",
        L"port KZP:",
        L"printer on Brimlake KZP Writer Port, driver Brimlake KZP Writer, attributes 0x42",
        L"driver Brimlake KZP Writer",
        L"form User Defined 215900 x 279400, printable to 215900, 279400, flags 0",
        L"monitor Brimlake KZP Writer Port, KZPPortMonitor.dll",
        L"Publish Directory =  (type 1, 0 bytes)",
        L"Enable ASCII = 0 (type 4, 4 bytes)",
    };
}

std::vector<std::wstring> MachineAfterRemoval() {
    const std::vector<std::wstring> installed = InstalledMachine();
    return {installed[4], installed[6], installed[7]};
}

}  // namespace kzp::test
