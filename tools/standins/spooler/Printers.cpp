// Opening, reading, changing, adding and removing printers.
#include <windows.h>
#include <winspool.h>

#include "tools/standins/common/Registry.h"
#include "tools/standins/spooler/Calls.h"
#include "tools/standins/spooler/Handles.h"
#include "tools/standins/spooler/Places.h"
#include "tools/standins/spooler/Queues.h"
#include "tools/standins/spooler/Reply.h"

using namespace kzp::standins;
using namespace kzp::standins::spooler;

namespace {

// What the wanted access amounts to once the general rights are spelled out.
ACCESS_MASK GrantedAccess(ACCESS_MASK wanted, bool server) {
    const ACCESS_MASK all = server ? SERVER_ALL_ACCESS : PRINTER_ALL_ACCESS;
    const ACCESS_MASK use = server ? SERVER_ACCESS_ENUMERATE : PRINTER_ACCESS_USE;
    if (wanted & (GENERIC_ALL | MAXIMUM_ALLOWED))
        return all;
    return wanted ? wanted | use : use;
}

DWORD HandOut(const Queue& queue, BYTE* buffer, DWORD bytes, DWORD* needed) {
    Reply<PRINTER_INFO_2W> reply;
    PRINTER_INFO_2W info{};
    info.Attributes = queue.attributes;
    info.Priority = queue.priority;
    info.DefaultPriority = queue.defaultPriority;
    info.StartTime = queue.startTime;
    info.UntilTime = queue.untilTime;
    info.Status = queue.status;
    reply.Add(info);
    reply.Text(&PRINTER_INFO_2W::pPrinterName, queue.name);
    reply.Text(&PRINTER_INFO_2W::pShareName, queue.shareName);
    reply.Text(&PRINTER_INFO_2W::pPortName, queue.port);
    reply.Text(&PRINTER_INFO_2W::pDriverName, queue.driver);
    reply.Text(&PRINTER_INFO_2W::pComment, queue.comment);
    reply.Text(&PRINTER_INFO_2W::pLocation, queue.location);
    reply.Block(&PRINTER_INFO_2W::pDevMode, queue.deviceMode);
    reply.Text(&PRINTER_INFO_2W::pSepFile, queue.separatorFile);
    reply.Text(&PRINTER_INFO_2W::pPrintProcessor, queue.printProcessor);
    reply.Text(&PRINTER_INFO_2W::pDatatype, queue.dataType);
    reply.Text(&PRINTER_INFO_2W::pParameters, queue.parameters);
    return reply.HandOut(buffer, bytes, needed);
}

DWORD Open(const wchar_t* name, HANDLE* printer, const PRINTER_DEFAULTSW* defaults) {
    if (!printer)
        return ERROR_INVALID_PARAMETER;
    *printer = nullptr;
    if (name && !QueueExists(name))
        return ERROR_INVALID_PRINTER_NAME;
    const ACCESS_MASK wanted = defaults ? defaults->DesiredAccess : 0;
    *printer = AddHandle({name ? name : L"", GrantedAccess(wanted, !name)});
    return ERROR_SUCCESS;
}

DWORD Change(HANDLE handle, DWORD level, BYTE* data, DWORD command) {
    std::wstring printer;
    if (const DWORD error = FindPrinter(handle, true, printer))
        return error;
    auto queue = LoadQueue(printer);
    if (!queue)
        return ERROR_PRINTER_DELETED;
    if (level != 2)
        return ERROR_INVALID_LEVEL;
    if (command != 0)
        return ERROR_INVALID_PRINTER_COMMAND;
    if (!data)
        return ERROR_INVALID_PARAMETER;
    if (const DWORD error = ReadRecord(*reinterpret_cast<const PRINTER_INFO_2W*>(data), *queue))
        return error;
    if (!SameName(queue->name, printer))
        return ERROR_NOT_SUPPORTED;  // this spooler does not rename printers
    return StoreQueue(*queue);
}

DWORD Add(DWORD level, const BYTE* data, HANDLE& printer) {
    if (level != 2)
        return ERROR_INVALID_LEVEL;
    if (!data)
        return ERROR_INVALID_PARAMETER;
    Queue queue;
    if (const DWORD error = ReadRecord(*reinterpret_cast<const PRINTER_INFO_2W*>(data), queue))
        return error;
    if (QueueExists(queue.name))
        return ERROR_PRINTER_ALREADY_EXISTS;
    // The real spooler asks the driver. A printer without a device mode is one that was put into the
    // registry.
    if (queue.deviceMode.empty())
        queue.deviceMode = PlainDeviceMode(queue.name);
    if (const DWORD error = StoreQueue(queue))
        return error;
    printer = AddHandle({queue.name, PRINTER_ALL_ACCESS});
    return ERROR_SUCCESS;
}

}  // namespace

extern "C" {

BOOL WINAPI OpenPrinterW(LPWSTR name, LPHANDLE printer, LPPRINTER_DEFAULTSW defaults) {
    return Succeeded(Answer(L"OpenPrinterW", [&] { return Open(name, printer, defaults); }));
}

BOOL WINAPI ClosePrinter(HANDLE printer) {
    return Succeeded(Answer(L"ClosePrinter", [&] { return CloseHandleEntry(printer); }));
}

BOOL WINAPI GetPrinterW(HANDLE handle, DWORD level, LPBYTE buffer, DWORD bytes, LPDWORD needed) {
    return Succeeded(Answer(L"GetPrinterW", [&]() -> DWORD {
        std::wstring printer;
        if (const DWORD error = FindPrinter(handle, false, printer))
            return error;
        const auto queue = LoadQueue(printer);
        if (!queue)
            return ERROR_PRINTER_DELETED;
        return level == 2 ? HandOut(*queue, buffer, bytes, needed) : DWORD{ERROR_INVALID_LEVEL};
    }));
}

BOOL WINAPI SetPrinterW(HANDLE printer, DWORD level, LPBYTE data, DWORD command) {
    return Succeeded(AnswerChange(L"SetPrinterW", std::to_wstring(level).c_str(),
                                  [&] { return Change(printer, level, data, command); }));
}

HANDLE WINAPI AddPrinterW(LPWSTR, DWORD level, LPBYTE data) {
    const auto* const record = reinterpret_cast<const PRINTER_INFO_2W*>(data);
    HANDLE printer = nullptr;
    Succeeded(AnswerChange(L"AddPrinterW", record && level == 2 ? record->pPrinterName : nullptr,
                           [&] { return Add(level, data, printer); }));
    return printer;
}

BOOL WINAPI DeletePrinter(HANDLE handle) {
    std::wstring printer;
    DWORD found = ERROR_INVALID_HANDLE;
    const auto note = [&] {
        found = FindPrinter(handle, true, printer);
        LogCall(L"DeletePrinter", printer.c_str());
    };
    return Succeeded(AnswerNoted(L"DeletePrinter", note, [&] {
        if (found == ERROR_SUCCESS)
            DeleteKey(HKEY_LOCAL_MACHINE, QueuePath(printer));
        return found;
    }));
}

}  // extern "C"
