// Printers as they are stored.
#pragma once

#include <windows.h>
#include <winspool.h>

#include <optional>
#include <string>
#include <vector>

namespace kzp::standins::spooler {

struct Queue {
    std::wstring name, shareName, port, driver, comment, location, separatorFile, printProcessor, dataType,
        parameters;
    std::vector<BYTE> deviceMode;  // the default device mode; empty for none
    DWORD attributes = 0, priority = 0, defaultPriority = 0, startTime = 0, untilTime = 0, status = 0;
};

// The printer's key below HKEY_LOCAL_MACHINE.
std::wstring QueuePath(const std::wstring& printer);

// False for names that no printer can have, too.
bool QueueExists(const std::wstring& printer);
std::vector<std::wstring> QueueNames();

// What the registry lacks is empty or has the spooler's defaults; a device mode that is cut short counts as
// none. Nothing when the printer does not exist.
std::optional<Queue> LoadQueue(const std::wstring& printer);
DWORD StoreQueue(const Queue& queue);

// A queue from the caller's record: ERROR_INVALID_PRINTER_NAME, ERROR_UNKNOWN_PORT,
// ERROR_UNKNOWN_PRINTER_DRIVER, ERROR_UNKNOWN_PRINTPROCESSOR or ERROR_INVALID_PARAMETER (device mode) when
// something in it does not hold. A record without a device mode keeps the one that `queue` has.
DWORD ReadRecord(const PRINTER_INFO_2W& record, Queue& queue);

// The bytes of a device mode, private part included; nothing when its sizes cannot be right.
std::optional<std::vector<BYTE>> DeviceModeBytes(const DEVMODEW* deviceMode);

// The public device mode of a plain printer, as a driver would give it to a new one.
std::vector<BYTE> PlainDeviceMode(const std::wstring& printer);

}  // namespace kzp::standins::spooler
