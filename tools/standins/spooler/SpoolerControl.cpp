#include "tools/standins/spooler/SpoolerControl.h"

#include "tools/standins/common/Journal.h"
#include "tools/standins/common/Registry.h"
#include "tools/standins/spooler/Places.h"

namespace kzp::standins::spooler {

namespace {

const Journal g_log(HKEY_LOCAL_MACHINE, kLogKey);

std::wstring Below(const wchar_t* key, const std::wstring& name) {
    return std::wstring(key) + L"\\" + name;
}

}  // namespace

bool IsInPlace() {
    const HMODULE spooler = GetModuleHandleW(L"winspool.drv");
    return spooler && GetProcAddress(spooler, "KzpStandInSpooler");
}

void FailCall(const std::wstring& function, DWORD error, DWORD after) {
    const MachineLock lock(kLockName);
    const Key key = CreateKey(HKEY_LOCAL_MACHINE, Below(kFailKey, function));
    WriteDword(key, L"Error", error);
    WriteDword(key, L"After", after);
}

void ClearFailures() {
    const MachineLock lock(kLockName);
    DeleteKey(HKEY_LOCAL_MACHINE, kFailKey);
}

void StartLog() {
    g_log.Start();
}

std::vector<std::wstring> ReadLog() {
    return g_log.Read();
}

void StopLog() {
    g_log.Stop();
}

void Note(const std::wstring& entry) {
    g_log.Append(entry);
}

void SetUpPrinter(const PrinterSetUp& printer) {
    const MachineLock lock(kLockName);
    WriteText(CreateKey(HKEY_LOCAL_MACHINE, kPortsKey), L"KZP:", L"");

    const Key driver = CreateKey(HKEY_LOCAL_MACHINE, Below(kDriversKey, printer.driver));
    WriteText(driver, L"Driver", L"unidrv.dll");
    WriteText(driver, L"Data File", L"kzpwriter.gpd");
    WriteText(driver, L"Configuration File", L"unidrvui.dll");

    const std::wstring path = Below(kPrintersKey, printer.name);
    DeleteKey(HKEY_LOCAL_MACHINE, path);
    const Key queue = CreateKey(HKEY_LOCAL_MACHINE, path);
    WriteText(queue, L"Name", printer.name);
    WriteText(queue, L"Port", L"KZP:");
    WriteText(queue, L"Printer Driver", printer.driver);
    WriteDword(queue, L"Attributes", PRINTER_ATTRIBUTE_LOCAL);
    if (const DEVMODEW* const mode = printer.deviceMode)
        WriteValue(queue, L"Default DevMode", REG_BINARY, mode, size_t{mode->dmSize} + mode->dmDriverExtra);
}

void RemovePrinter(const std::wstring& name) {
    const MachineLock lock(kLockName);
    DeleteKey(HKEY_LOCAL_MACHINE, Below(kPrintersKey, name));
}

void RemoveForm(const std::wstring& name) {
    const MachineLock lock(kLockName);
    DeleteValue(OpenKey(HKEY_LOCAL_MACHINE, kFormsKey, KEY_WRITE), name);
}

}  // namespace kzp::standins::spooler
