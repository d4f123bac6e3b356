// The printer for a machine on which nobody installed it.
#include "support/Spooler.h"
#include "tools/driverhost/PrintCommand.h"
#include "tools/driverhost/Text.h"

namespace driverhost {

namespace {

using kzp::SpoolerText;

constexpr wchar_t kDriver[] = L"Brimlake KZP Writer";

}  // namespace

void CreatePrinter(const std::wstring& name) {
    HANDLE existing = nullptr;
    if (OpenPrinterW(SpoolerText(name.c_str()), &existing, nullptr)) {
        ClosePrinter(existing);
        return;
    }
    // The files of the driver whose user interface the host stands for; the spooler records their names.
    DRIVER_INFO_3W driver = {.cVersion = 3,
                             .pName = SpoolerText(kDriver),
                             .pEnvironment = SpoolerText(L"Windows x64"),
                             .pDriverPath = SpoolerText(L"UNIDRV.DLL"),
                             .pDataFile = SpoolerText(L"KZPWriter.GPD"),
                             .pConfigFile = SpoolerText(L"UNIDRVUI.DLL"),
                             .pHelpFile = SpoolerText(L"UNIDRV.HLP"),
                             .pDependentFiles = SpoolerText(L"KZPWriterUI.dll\0KZPWriterRes.dll\0"),
                             .pDefaultDataType = SpoolerText(L"RAW")};
    if (!AddPrinterDriverW(nullptr, 3, reinterpret_cast<BYTE*>(&driver)) &&
        GetLastError() != ERROR_PRINTER_DRIVER_ALREADY_INSTALLED)
        throw LastError(L"the printer driver cannot be added");
    PRINTER_INFO_2W info = {.pPrinterName = SpoolerText(name.c_str()),
                            .pPortName = SpoolerText(L"FILE:"),
                            .pDriverName = SpoolerText(kDriver),
                            .pPrintProcessor = SpoolerText(L"winprint"),
                            .pDatatype = SpoolerText(L"RAW"),
                            .Attributes = PRINTER_ATTRIBUTE_LOCAL};
    const kzp::UniquePrinter printer(AddPrinterW(nullptr, 2, reinterpret_cast<BYTE*>(&info)));
    if (!printer)
        throw LastError(L"the printer cannot be added");
    Say(L"printer \"" + name + L"\" created");
}

}  // namespace driverhost
