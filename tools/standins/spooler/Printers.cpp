// Printers as the registry holds them: opening, reading, changing, adding and removing.
#include <windows.h>
#include <winspool.h>

#include <cstddef>
#include <cwchar>

#include "tools/standins/common/Registry.h"
#include "tools/standins/spooler/Calls.h"
#include "tools/standins/spooler/Handles.h"
#include "tools/standins/spooler/Machine.h"
#include "tools/standins/spooler/Reply.h"

using namespace kzp::standins;
using namespace kzp::standins::spooler;

namespace {

constexpr size_t kLongestPrinterName = 220;
constexpr wchar_t kDeviceMode[] = L"Default DevMode";

template <class Member>
struct Stored {
    Member PRINTER_INFO_2W::* member;
    const wchar_t* value;
    const wchar_t* missing = L"";
};
constexpr Stored<LPWSTR> kTexts[] = {{&PRINTER_INFO_2W::pPrinterName, L"Name"},
                                     {&PRINTER_INFO_2W::pShareName, L"Share Name"},
                                     {&PRINTER_INFO_2W::pPortName, L"Port"},
                                     {&PRINTER_INFO_2W::pDriverName, L"Printer Driver"},
                                     {&PRINTER_INFO_2W::pComment, L"Description"},
                                     {&PRINTER_INFO_2W::pLocation, L"Location"},
                                     {&PRINTER_INFO_2W::pSepFile, L"Separator File"},
                                     {&PRINTER_INFO_2W::pPrintProcessor, L"Print Processor", kPrintProcessor},
                                     {&PRINTER_INFO_2W::pDatatype, L"Datatype", L"RAW"},
                                     {&PRINTER_INFO_2W::pParameters, L"Parameters"}};
constexpr Stored<DWORD> kNumbers[] = {{&PRINTER_INFO_2W::Attributes, L"Attributes"},
                                      {&PRINTER_INFO_2W::Priority, L"Priority"},
                                      {&PRINTER_INFO_2W::DefaultPriority, L"Default Priority"},
                                      {&PRINTER_INFO_2W::StartTime, L"StartTime"},
                                      {&PRINTER_INFO_2W::UntilTime, L"UntilTime"}};

bool IsPrinterName(const std::wstring& name) {
    return !name.empty() && name.size() <= kLongestPrinterName &&
           name.find_first_of(L"\\,!") == std::wstring::npos;
}

// What the wanted access amounts to once the general rights are spelled out.
ACCESS_MASK GrantedAccess(ACCESS_MASK wanted, bool server) {
    const ACCESS_MASK all = server ? SERVER_ALL_ACCESS : PRINTER_ALL_ACCESS;
    const ACCESS_MASK use = server ? SERVER_ACCESS_ENUMERATE : PRINTER_ACCESS_USE;
    return (wanted & (GENERIC_ALL | MAXIMUM_ALLOWED)) ? all : wanted | use;
}

void CheckRecord(const PRINTER_INFO_2W& record) {
    // The members up to dmFields are what every version of a device mode has.
    Require(!record.pDevMode || record.pDevMode->dmSize >= offsetof(DEVMODEW, dmFields) + sizeof(DWORD),
            ERROR_INVALID_PARAMETER);
    Require(record.pPrinterName && IsPrinterName(record.pPrinterName), ERROR_INVALID_PRINTER_NAME);
    Require(record.pPortName && PortsExist(record.pPortName), ERROR_UNKNOWN_PORT);
    Require(record.pDriverName && DriverExists(record.pDriverName), ERROR_UNKNOWN_PRINTER_DRIVER);
    Require(IsEmpty(record.pPrintProcessor) || SameName(record.pPrintProcessor, kPrintProcessor),
            ERROR_UNKNOWN_PRINTPROCESSOR);
}

// A record without a device mode keeps the one that is stored.
void Store(PRINTER_INFO_2W record) {
    record.Attributes |= PRINTER_ATTRIBUTE_LOCAL;
    record.Priority = record.Priority ? record.Priority : 1;
    const Key key = CreateKey(HKEY_LOCAL_MACHINE, QueuePath(record.pPrinterName));
    for (const auto& text : kTexts)
        Check(WriteText(key, text.value, IsEmpty(record.*text.member) ? text.missing : record.*text.member));
    for (const auto& number : kNumbers)
        WriteDword(key, number.value, record.*number.member);
    if (const DEVMODEW* const mode = record.pDevMode)
        WriteValue(key, kDeviceMode, REG_BINARY, mode, size_t{mode->dmSize} + mode->dmDriverExtra);
}

// The public device mode of a plain printer, as a driver would give it to a new one.
DEVMODEW PlainDeviceMode(const wchar_t* printer) {
    DEVMODEW plain{};
    std::wcsncpy(plain.dmDeviceName, printer, CCHDEVICENAME - 1);
    plain.dmSpecVersion = DM_SPECVERSION;
    plain.dmSize = sizeof plain;
    plain.dmFields = DM_ORIENTATION | DM_PAPERSIZE | DM_COPIES;
    plain.dmOrientation = DMORIENT_PORTRAIT;
    plain.dmPaperSize = DMPAPER_LETTER;
    plain.dmCopies = 1;
    return plain;
}

}  // namespace

namespace kzp::standins::spooler {

std::wstring QueuePath(const std::wstring& printer) {
    return std::wstring(kPrintersKey) + L"\\" + printer;
}

bool QueueExists(const std::wstring& printer) {
    return IsPrinterName(printer) && OpenKey(HKEY_LOCAL_MACHINE, QueuePath(printer));
}

std::vector<std::wstring> QueueTexts(const wchar_t* value) {
    std::vector<std::wstring> texts;
    for (const std::wstring& printer : SubkeyNames(OpenKey(HKEY_LOCAL_MACHINE, kPrintersKey)))
        texts.push_back(ReadText(OpenKey(HKEY_LOCAL_MACHINE, QueuePath(printer)), value));
    return texts;
}

}  // namespace kzp::standins::spooler

extern "C" {

BOOL WINAPI OpenPrinterW(LPWSTR name, LPHANDLE printer, LPPRINTER_DEFAULTSW defaults) {
    return Succeeded(Answer(L"OpenPrinterW", [&] {
        Require(printer, ERROR_INVALID_PARAMETER);
        *printer = nullptr;
        Require(!name || QueueExists(name), ERROR_INVALID_PRINTER_NAME);
        *printer =
            AddHandle({name ? name : L"", GrantedAccess(defaults ? defaults->DesiredAccess : 0, !name)});
    }));
}

BOOL WINAPI ClosePrinter(HANDLE printer) {
    return Succeeded(Answer(L"ClosePrinter", [&] { CloseHandleEntry(printer); }));
}

BOOL WINAPI GetPrinterW(HANDLE handle, DWORD level, LPBYTE buffer, DWORD bytes, LPDWORD needed) {
    return Succeeded(Answer(L"GetPrinterW", [&] {
        const Key key = OpenKey(HKEY_LOCAL_MACHINE, QueuePath(FindPrinter(handle)));
        Require(level == 2, ERROR_INVALID_LEVEL);
        PRINTER_INFO_2W info{};
        for (const auto& number : kNumbers)
            info.*number.member = ReadDword(key, number.value);
        Reply<PRINTER_INFO_2W> reply;
        reply.Add(info);
        for (const auto& text : kTexts)
            reply.Text(text.member, ReadText(key, text.value, text.missing));
        if (const auto mode = ReadValue(key, kDeviceMode))
            reply.Block(&PRINTER_INFO_2W::pDevMode, mode->bytes.data(), mode->bytes.size());
        reply.HandOut(buffer, bytes, needed);
    }));
}

BOOL WINAPI SetPrinterW(HANDLE handle, DWORD level, LPBYTE data, DWORD command) {
    return Succeeded(AnswerChange(L"SetPrinterW", std::to_wstring(level).c_str(), [&] {
        const std::wstring printer = FindPrinter(handle, true);
        Require(level == 2, ERROR_INVALID_LEVEL);
        Require(command == 0, ERROR_INVALID_PRINTER_COMMAND);
        const auto& record = RecordOf<PRINTER_INFO_2W>(data, true);
        CheckRecord(record);
        Require(SameName(record.pPrinterName, printer),
                ERROR_NOT_SUPPORTED);  // printers are not renamed here
        Store(record);
    }));
}

HANDLE WINAPI AddPrinterW(LPWSTR, DWORD level, LPBYTE data) {
    HANDLE printer = nullptr;
    const wchar_t* const name = TextIn(data, level == 2, &PRINTER_INFO_2W::pPrinterName);
    Succeeded(AnswerChange(L"AddPrinterW", name, [&] {
        PRINTER_INFO_2W record = RecordOf<PRINTER_INFO_2W>(data, level == 2);
        CheckRecord(record);
        Require(!QueueExists(name), ERROR_PRINTER_ALREADY_EXISTS);
        // The real spooler asks the driver. A printer without a device mode is one that was put into the
        // registry.
        DEVMODEW plain = PlainDeviceMode(name);
        if (!record.pDevMode)
            record.pDevMode = &plain;
        Store(record);
        printer = AddHandle({name, PRINTER_ALL_ACCESS});
    }));
    return printer;
}

BOOL WINAPI DeletePrinter(HANDLE handle) {
    return Succeeded(AnswerChange(L"DeletePrinter", nullptr, [&] {
        DeleteKey(HKEY_LOCAL_MACHINE, QueuePath(FindPrinter(handle, true)));
    }));
}

}  // extern "C"
