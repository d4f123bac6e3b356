#include "tools/standins/spooler/Queues.h"

#include <cstddef>
#include <cstring>
#include <cwchar>

#include "tools/standins/common/Registry.h"
#include "tools/standins/spooler/Calls.h"
#include "tools/standins/spooler/Drivers.h"
#include "tools/standins/spooler/Places.h"
#include "tools/standins/spooler/Ports.h"

namespace kzp::standins::spooler {

namespace {

constexpr size_t kLongestPrinterName = 220;

bool IsPrinterName(const std::wstring& name) {
    return !name.empty() && name.size() <= kLongestPrinterName &&
           name.find_first_of(L"\\,!") == std::wstring::npos;
}

std::wstring TextOrEmpty(const wchar_t* text) {
    return text ? text : L"";
}

}  // namespace

std::wstring QueuePath(const std::wstring& printer) {
    return std::wstring(kPrintersKey) + L"\\" + printer;
}

bool QueueExists(const std::wstring& printer) {
    return IsPrinterName(printer) && OpenKey(HKEY_LOCAL_MACHINE, QueuePath(printer));
}

std::vector<std::wstring> QueueNames() {
    return SubkeyNames(OpenKey(HKEY_LOCAL_MACHINE, kPrintersKey));
}

std::optional<std::vector<BYTE>> DeviceModeBytes(const DEVMODEW* deviceMode) {
    // The members up to dmFields are what every version of the record has.
    if (deviceMode->dmSize < offsetof(DEVMODEW, dmFields) + sizeof deviceMode->dmFields)
        return std::nullopt;
    const auto* const bytes = reinterpret_cast<const BYTE*>(deviceMode);
    return std::vector<BYTE>(bytes, bytes + deviceMode->dmSize + deviceMode->dmDriverExtra);
}

std::vector<BYTE> PlainDeviceMode(const std::wstring& printer) {
    DEVMODEW plain{};
    std::wcsncpy(plain.dmDeviceName, printer.c_str(), CCHDEVICENAME - 1);
    plain.dmSpecVersion = DM_SPECVERSION;
    plain.dmSize = sizeof plain;
    plain.dmFields = DM_ORIENTATION | DM_PAPERSIZE | DM_COPIES;
    plain.dmOrientation = DMORIENT_PORTRAIT;
    plain.dmPaperSize = DMPAPER_LETTER;
    plain.dmCopies = 1;
    const auto* const bytes = reinterpret_cast<const BYTE*>(&plain);
    return std::vector<BYTE>(bytes, bytes + sizeof plain);
}

std::optional<Queue> LoadQueue(const std::wstring& printer) {
    if (!IsPrinterName(printer))
        return std::nullopt;
    const Key key = OpenKey(HKEY_LOCAL_MACHINE, QueuePath(printer));
    if (!key)
        return std::nullopt;
    Queue queue;
    queue.name = ReadText(key, L"Name", printer);
    queue.shareName = ReadText(key, L"Share Name");
    queue.port = ReadText(key, L"Port");
    queue.driver = ReadText(key, L"Printer Driver");
    queue.comment = ReadText(key, L"Description");
    queue.location = ReadText(key, L"Location");
    queue.separatorFile = ReadText(key, L"Separator File");
    queue.printProcessor = ReadText(key, L"Print Processor", kPrintProcessor);
    queue.dataType = ReadText(key, L"Datatype", L"RAW");
    queue.parameters = ReadText(key, L"Parameters");
    queue.attributes = ReadDword(key, L"Attributes");
    queue.priority = ReadDword(key, L"Priority", 1);
    queue.defaultPriority = ReadDword(key, L"Default Priority");
    queue.startTime = ReadDword(key, L"StartTime");
    queue.untilTime = ReadDword(key, L"UntilTime");
    queue.status = ReadDword(key, L"Status");
    if (const auto stored = ReadValue(key, L"Default DevMode");
        stored && stored->bytes.size() >= offsetof(DEVMODEW, dmFields)) {
        DEVMODEW head{};
        std::memcpy(&head, stored->bytes.data(), offsetof(DEVMODEW, dmFields));
        if (head.dmSize && stored->bytes.size() >= size_t{head.dmSize} + head.dmDriverExtra)
            queue.deviceMode = stored->bytes;
    }
    return queue;
}

DWORD StoreQueue(const Queue& queue) {
    const Key key = CreateKey(HKEY_LOCAL_MACHINE, QueuePath(queue.name));
    if (!key)
        return ERROR_ACCESS_DENIED;
    WriteText(key, L"Name", queue.name);
    WriteText(key, L"Share Name", queue.shareName);
    WriteText(key, L"Port", queue.port);
    WriteText(key, L"Printer Driver", queue.driver);
    WriteText(key, L"Description", queue.comment);
    WriteText(key, L"Location", queue.location);
    WriteText(key, L"Separator File", queue.separatorFile);
    WriteText(key, L"Print Processor", queue.printProcessor);
    WriteText(key, L"Datatype", queue.dataType);
    WriteText(key, L"Parameters", queue.parameters);
    WriteDword(key, L"Attributes", queue.attributes);
    WriteDword(key, L"Priority", queue.priority);
    WriteDword(key, L"Default Priority", queue.defaultPriority);
    WriteDword(key, L"StartTime", queue.startTime);
    WriteDword(key, L"UntilTime", queue.untilTime);
    WriteDword(key, L"Status", queue.status);
    if (!queue.deviceMode.empty())
        WriteValue(key, L"Default DevMode", REG_BINARY, queue.deviceMode.data(), queue.deviceMode.size());
    return ERROR_SUCCESS;
}

DWORD ReadRecord(const PRINTER_INFO_2W& record, Queue& queue) {
    queue.name = TextOrEmpty(record.pPrinterName);
    queue.shareName = TextOrEmpty(record.pShareName);
    queue.port = TextOrEmpty(record.pPortName);
    queue.driver = TextOrEmpty(record.pDriverName);
    queue.comment = TextOrEmpty(record.pComment);
    queue.location = TextOrEmpty(record.pLocation);
    queue.separatorFile = TextOrEmpty(record.pSepFile);
    queue.printProcessor = IsEmpty(record.pPrintProcessor) ? kPrintProcessor : record.pPrintProcessor;
    queue.dataType = IsEmpty(record.pDatatype) ? L"RAW" : record.pDatatype;
    queue.parameters = TextOrEmpty(record.pParameters);
    queue.attributes = record.Attributes | PRINTER_ATTRIBUTE_LOCAL;
    queue.priority = record.Priority ? record.Priority : 1;
    queue.defaultPriority = record.DefaultPriority;
    queue.startTime = record.StartTime;
    queue.untilTime = record.UntilTime;
    if (record.pDevMode) {
        auto bytes = DeviceModeBytes(record.pDevMode);
        if (!bytes)
            return ERROR_INVALID_PARAMETER;
        queue.deviceMode = std::move(*bytes);
    }
    if (!IsPrinterName(queue.name))
        return ERROR_INVALID_PRINTER_NAME;
    if (!PortsExist(queue.port))
        return ERROR_UNKNOWN_PORT;
    if (!DriverExists(queue.driver))
        return ERROR_UNKNOWN_PRINTER_DRIVER;
    if (!SameName(queue.printProcessor, kPrintProcessor))
        return ERROR_UNKNOWN_PRINTPROCESSOR;
    return ERROR_SUCCESS;
}

}  // namespace kzp::standins::spooler
