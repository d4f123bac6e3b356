// The open handles of this process.
#pragma once

#include <windows.h>
#include <winspool.h>

#include <string>

namespace kzp::standins::spooler {

struct OpenedHandle {
    std::wstring printer;  // empty for a handle to the server itself
    ACCESS_MASK access = 0;

    bool IsServer() const { return printer.empty(); }
    bool MayAdminister() const {
        return access & (IsServer() ? SERVER_ACCESS_ADMINISTER : PRINTER_ACCESS_ADMINISTER);
    }
};

// Never null.
HANDLE AddHandle(OpenedHandle handle);

// ERROR_INVALID_HANDLE for anything that AddHandle did not give out or that was closed since.
DWORD FindHandle(HANDLE handle, OpenedHandle& found);
DWORD CloseHandleEntry(HANDLE handle);

// FindHandle for calls on printers: server handles are refused as well. `administer` asks for the right to
// change the printer (ERROR_ACCESS_DENIED). A printer that was deleted meanwhile: ERROR_PRINTER_DELETED.
DWORD FindPrinter(HANDLE handle, bool administer, std::wstring& printer);

}  // namespace kzp::standins::spooler
